#pragma once

#include <pybind11/pybind11.h>
#include <unistd.h>

namespace dataengine::python {

/// Releases the GIL as long as it exists.
///
/// When the interpreter ends, Python unwinds a daemon thread that asks for the GIL. A destructor
/// cannot be unwound, so that such a thread stays here until the process has ended.
class GilRelease {
  public:
    GilRelease() : state_(PyEval_SaveThread()) {}
    GilRelease(const GilRelease&) = delete;
    GilRelease& operator=(const GilRelease&) = delete;
    ~GilRelease() {
        try {
            PyEval_RestoreThread(state_);
        } catch (...) {
            for (;;) pause();
        }
    }

  private:
    PyThreadState* state_;
};

}  // namespace dataengine::python
