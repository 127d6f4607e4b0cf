#pragma once

#include <VxUtil/vxJson.h>
#include <rapidjson/document.h>

#include <string>
#include <vector>

/// Reads and writes the files of a command. The path "-" is standard input or standard output. All
/// functions throw Failure with the path and the reason.
namespace tool {

/// Returns whether `path` is "-" or the path of an existing file.
bool IsFile(const std::string& path);

/// Checks the paths of a command before it reads anything. Empty paths are ignored.
///
/// Throws UsageError if standard input or output is named twice, or if an output is the same file
/// as an input or as another output.
void CheckPaths(const std::vector<std::string>& inputs, const std::vector<std::string>& outputs);

/// Returns the bytes of a file smaller than 2 GiB.
std::string ReadFile(const std::string& path);

/// Parses JSON text of any depth. The error message names `path` and the byte.
rapidjson::Document ParseJson(const std::string& path, const std::string& text);

/// Returns the JSON value in a file.
vxJson::Value ReadJson(const std::string& path);

struct FileContent {
    std::string path;
    std::string bytes;
};

/// Writes regular files to temporary files first, and renames them only after all output has been
/// written. Writes other outputs, such as devices, directly.
///
/// Ends the process with SIGPIPE if the reader of standard output has closed the pipe.
void WriteFiles(const std::vector<FileContent>& files);

}  // namespace tool
