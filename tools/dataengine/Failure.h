#pragma once

#include <stdexcept>
#include <string>

namespace tool {

/// An error that ends a command: one line that names the file, the item and the byte concerned.
class Failure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// A command line that asks for something impossible.
class UsageError : public Failure {
  public:
    using Failure::Failure;
};

/// Prints "dataengine: " and `error` as one line to standard error, control characters escaped.
void PrintError(const std::string& error);

/// Prints errors that do not end a command, and remembers that there were any.
class Complaints {
  public:
    void Add(const std::string& error) {
        PrintError(error);
        status_ = 1;
    }
    /// Returns the exit status of the command: 1 after an error, else 0.
    int Status() const { return status_; }

  private:
    int status_ = 0;
};

}  // namespace tool
