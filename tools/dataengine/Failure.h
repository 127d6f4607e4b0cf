#pragma once

#include <stdexcept>
#include <string>

namespace tool {

/// The path of standard input and standard output.
constexpr char kStandard[] = "-";

/// Returns the path of an input as error messages name it.
inline std::string DisplayName(const std::string& path) {
    return path == kStandard ? "standard input" : path;
}

/// An error that ends a command: one line that names the file, the item and the byte concerned.
class Failure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
    Failure(const std::string& path, const std::string& error)
        : runtime_error(DisplayName(path) + ": " + error) {}
};

/// An error in the command line.
class UsageError : public Failure {
  public:
    using Failure::Failure;
};

/// Prints "dataengine: " and `error` as one line to standard error, with control characters
/// escaped.
void PrintError(const std::string& error);

/// Reports errors that do not end a command, and sets its exit status.
class ErrorReporter {
  public:
    /// Prints `error` to standard error.
    void Report(const std::string& error) {
        PrintError(error);
        status_ = 1;
    }
    /// Returns the exit status of the command: 1 after an error, else 0.
    int Status() const { return status_; }

  private:
    int status_ = 0;
};

}  // namespace tool
