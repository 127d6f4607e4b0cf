#pragma once

#include <optional>
#include <string>
#include <vector>

/// The commands of the tool, each in its own source. A command takes its options from the command
/// line, writes its output and returns the exit status: 0, or 1 if part of the work failed. Throws
/// Failure for an error that ends the command.
namespace tool {

struct ShowOptions {
    std::string frame;
    std::string offsets;  // a path; if empty, values are located by their order
    std::string output = "-";
};
int Show(const ShowOptions& options);

struct DecodeOptions {
    std::string frame;
    std::string offsets;              // as for show
    std::vector<std::string> select;  // names, or one path; everything if empty
    std::string map;                  // a path; no variable is renamed if empty
    std::string parser;               // the parser whose variables are renamed
    std::string format = "table";
    std::string output = "-";
};
int Decode(const DecodeOptions& options);

struct PackOptions {
    std::string input;
    std::string output;
    std::string offsets;  // a path; not written if empty
    std::string name;     // of the frame; if empty, the unit of the CSV or the name of the file
};
int Pack(const PackOptions& options);

struct RecordOptions {
    std::string device;
    std::string type;
    std::string name;
    std::string file;
    std::optional<long long> time;  // milliseconds since 1970; the current time if absent
    std::vector<std::string> views = {"store", "keys"};
    std::string format = "json";
    std::string output = "-";
};
int Record(const RecordOptions& options);

struct NamesOptions {
    std::string text;  // part of a name or text; everything if empty
    std::string output = "-";
};
int Names(const NamesOptions& options);

}  // namespace tool
