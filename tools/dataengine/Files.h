#pragma once

#include <VxUtil/vxJson.h>
#include <rapidjson/document.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "structure/detail/ByteBuffer.h"
#include "tools/dataengine/Text.h"

/// Reads and writes the files of a command. The path "-" is standard input or standard output. All
/// functions throw Failure with the path and the reason.
namespace dataengine::tool {

/// The path of standard input and standard output.
constexpr char kStandard[] = "-";

/// An error that ends a command: one line that names the file, the item and the byte concerned.
class Failure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
    Failure(const std::string& path, const std::string& error)
        : runtime_error((path == kStandard ? "standard input" : path) + ": " + error) {}
};

/// An error in the command line.
class UsageError : public Failure {
  public:
    using Failure::Failure;
};

/// Prints an error as one line to standard error, with control characters escaped.
void PrintError(const std::string& error);

/// Checks the paths of a command; empty ones are ignored. Throws UsageError if standard input or
/// output is named twice, or if an output is the same file as another path.
void CheckPaths(std::vector<std::string> inputs, const std::vector<std::string>& outputs);

/// Replaces `bytes` by those of a file smaller than 2 GiB.
void ReadFile(const std::string& path, std::string& bytes);
std::string ReadFile(const std::string& path);

/// Parses JSON text of any depth, with exact doubles. Error messages name `path` and the byte.
rapidjson::Document ParseJson(const std::string& path, const std::string& text);

/// Returns the JSON value in a file.
vxJson::Value ReadJson(const std::string& path);

/// A string to which small pieces are appended without a call each: a third less time for rows.
class Buffer : public detail::ByteBuffer {
  public:
    void operator+=(char c) { Fill(1, c); }
    void operator+=(std::string_view text) {
        char* const at = Reserve(text.size());
        SetEnd(std::copy(text.begin(), text.end(), at));
    }
    void Fill(std::size_t count, char c) {
        char* const at = Reserve(count);
        SetEnd(std::fill_n(at, count, c));
    }
};

/// Text on its way to an output. It is written in pieces, so that it need not fit into memory.
class Sink {
  public:
    virtual ~Sink() = default;

    Buffer text;

    /// Writes the text if there is much of it.
    void Check() {
        constexpr std::size_t kLarge = 1 << 20;
        if (text.Size() >= kLarge) Flush();
    }
    void Flush() {
        Write(text.Bytes());
        text.Truncate(0);
    }

  private:
    virtual void Write(std::string_view bytes) = 0;
};

/// The output of a command. A regular file is written under a temporary name in the folder of its
/// target, and replaces it when the output is complete; a symbolic link is kept and its target
/// replaced. Other outputs, such as devices, are written directly. A terminal gets the output with
/// escapes.
///
/// Ends the process with SIGPIPE if the reader of standard output has closed the pipe.
class Output : public Sink {
  public:
    explicit Output(const std::string& path);
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    /// Removes the temporary file unless the output is complete.
    ~Output() override;

    void Write(std::string_view bytes) override;
    void Complete();

    /// Prints an error after the text so far. The command goes on, and fails in the end.
    void Report(const std::string& error);

    Content content = Content::kJson;
    int status = 0;  // of the command

  private:
    std::string name_;  // for errors
    std::string target_;
    std::string temporary_;  // empty if the output is written directly
    int file_ = -1;
    bool isTerminal_ = false;
};

}  // namespace dataengine::tool
