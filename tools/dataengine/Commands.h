#pragma once

#include <string>
#include <vector>

#include "tools/dataengine/Files.h"

namespace dataengine::tool {

/// The options of all commands. A path that is empty was not given.
struct Options {
    std::string input;                // the file of the command
    std::string other;                // the second frame of diff
    std::vector<std::string> inputs;  // the frames of decode
    std::string filesFrom;            // a list of more inputs
    std::string offsets;              // read by show and decode
    std::string offsetsOutput;        // written by pack, in the same form
    std::vector<std::string> select;  // names, or one path; everything if empty
    std::string map;                  // no variable is renamed if empty
    std::string parser;               // the parser whose variables are renamed
    std::string like;                 // a frame of which a CSV has the rows
    std::string name;                 // of a frame
    std::string format;
    std::string color = "auto";
    std::string output = kStandard;
    unsigned jobs = 1;
    bool safeCsv = false;
    bool debug = false;

    std::string device;  // of a record, and so are the following
    std::string type;
    std::string location;
    std::string time;  // milliseconds since 1970 or ISO 8601; the current time if empty
    std::vector<std::string> views = {"store", "keys"};
    std::string text;  // part of a name or text of the vocabulary
};

/// The commands, each in its own source. A command throws Failure for an error that ends it. @{
void Show(const Options& options, Output& output);
void Decode(const Options& options, Output& output);
void Unpack(const Options& options, Output& output);
void Pack(const Options& options, Output& output);
void Diff(const Options& options, Output& output);
void Bson(const Options& options, Output& output);
void Record(const Options& options, Output& output);
void Names(const Options& options, Output& output);
/// @}

}  // namespace dataengine::tool
