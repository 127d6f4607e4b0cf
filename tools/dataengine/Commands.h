#pragma once

#include <string>
#include <vector>

/// The commands of the tool, each in its own source. A command takes its options from the command
/// line, writes its output and returns the exit status: 0, or 1 if part of the work failed. Throws
/// Failure for an error that ends the command.
namespace dataengine::tool {

/// The options of all commands. A path that is empty was not given.
struct Options {
    std::string input;                // the file of the command
    std::string other;                // the second frame of diff
    std::vector<std::string> inputs;  // the frames of decode
    std::string filesFrom;            // a list of more inputs
    std::string offsets;              // read by show and decode, written by pack
    std::vector<std::string> select;  // names, or one path; everything if empty
    std::string map;                  // no variable is renamed if empty
    std::string parser;               // the parser whose variables are renamed
    std::string like;                 // a frame with the unit and the types of a CSV
    std::string name;                 // of a frame
    std::string format;
    std::string color = "auto";
    std::string output = "-";
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

int Show(const Options& options);
int Decode(const Options& options);
int Unpack(const Options& options);
int Pack(const Options& options);
int Diff(const Options& options);
int Bson(const Options& options);
int Record(const Options& options);
int Names(const Options& options);

}  // namespace dataengine::tool
