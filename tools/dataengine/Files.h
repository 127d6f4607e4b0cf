#pragma once

#include <VxUtil/vxJson.h>
#include <rapidjson/document.h>

#include <string>
#include <vector>

/// Files as commands read and write them. The path "-" is standard input or standard output. All
/// operations throw Failure with the path and the reason.
namespace tool {

/// The path of standard input and standard output.
constexpr char kStandard[] = "-";

/// Returns the path of an input as error messages show it.
std::string Shown(const std::string& path);

/// Returns whether `path` is that of an existing file, or "-".
bool IsFile(const std::string& path);

/// Checks the paths of a command before it reads anything. Empty paths are ignored.
///
/// Throws UsageError if standard input or output is named twice, or if an output is the same file
/// as an input or as another output.
void CheckPaths(const std::vector<std::string>& inputs, const std::vector<std::string>& outputs);

/// Returns the bytes of a file smaller than 2 GiB.
std::string ReadFile(const std::string& path);

/// Parses JSON text of any depth; `path` is for the error message, which names the byte.
rapidjson::Document ParseJson(const std::string& path, const std::string& text);

/// Returns the JSON value that a file holds.
vxJson::Value ReadJson(const std::string& path);

struct FileContent {
    std::string path;
    std::string bytes;
};

/// Writes all files or none: each goes to a temporary file first, and all are then renamed. A path
/// that is not a regular file, such as a device, is written directly.
///
/// A reader that has closed its end of standard output ends the process with SIGPIPE.
void WriteFiles(const std::vector<FileContent>& files);

}  // namespace tool
