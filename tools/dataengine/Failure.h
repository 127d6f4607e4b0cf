#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace dataengine::tool {

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

/// Throws an exception of type `Error` with the message of the current exception after `prefix`.
template <typename Error>
[[noreturn]] void Fail(const std::string& prefix, const std::exception& error) {
    throw Error(prefix + ": " + error.what());
}

}  // namespace dataengine::tool
