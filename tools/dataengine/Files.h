#pragma once

#include <VxUtil/vxJson.h>
#include <rapidjson/document.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tools/dataengine/Text.h"

/// Reads and writes the files of a command. The path "-" is standard input or standard output. All
/// functions throw Failure with the path and the reason.
namespace dataengine::tool {

/// Returns whether `path` is "-" or the path of an existing file.
bool IsFile(const std::string& path);

/// Checks the paths of a command before it reads anything. Empty paths are ignored.
///
/// Throws UsageError if standard input or output is named twice, or if an output is the same file
/// as an input or as another output.
void CheckPaths(const std::vector<std::string>& inputs, const std::vector<std::string>& outputs);

/// Replaces `bytes` by those of a file smaller than 2 GiB.
void ReadFile(const std::string& path, std::string& bytes);
std::string ReadFile(const std::string& path);

/// Parses JSON text of any depth, with exact doubles. Error messages name `path` and the byte.
rapidjson::Document ParseJson(const std::string& path, const std::string& text);

/// Returns the JSON value in a file.
vxJson::Value ReadJson(const std::string& path);

/// Returns the lines of a file without their ends. Empty lines are left out.
std::vector<std::string> ReadLines(const std::string& path);

/// An output of a command. A regular file is written under a temporary name in the folder of its
/// target, and replaces it when the output is complete; a symbolic link is kept and its target
/// replaced. Other outputs, such as devices, are written directly. A terminal gets the output with
/// escapes.
///
/// Ends the process with SIGPIPE if the reader of standard output has closed the pipe.
class Output {
  public:
    explicit Output(const std::string& path, Content content = Content::kText);
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    /// Removes the temporary file unless the output is complete.
    ~Output();

    void Write(std::string_view bytes);

    /// Completes all outputs, and replaces files only after each has been written.
    template <typename... Outputs>
    static void Complete(Outputs&... outputs) {
        (outputs.Close(), ...);
        (outputs.Replace(), ...);
    }

  private:
    void Stage();
    void Close();
    void Replace();

    std::string path_;
    std::string target_;
    std::string temporary_;  // empty if the output is written directly
    int file_ = -1;
    Content content_;
    bool isEscaped_ = false;
};

/// Writes an output as a whole.
void WriteFile(const std::string& path, std::string_view bytes, Content content = Content::kText);

}  // namespace dataengine::tool
