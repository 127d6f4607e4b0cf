#pragma once

#include <pybind11/pybind11.h>

#include <string_view>

namespace dataengine::python {

/// The bytes of a bytes-like object. While a Buffer exists, Python refuses to resize, release or
/// close the object. Its destructor needs the GIL.
class Buffer {
  public:
    /// Throws TypeError if `object` is not bytes-like, BufferError if its bytes are not contiguous.
    explicit Buffer(const pybind11::handle& object) {
        if (PyObject_GetBuffer(object.ptr(), &view_, PyBUF_SIMPLE) != 0)
            throw pybind11::error_already_set();
    }
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;
    ~Buffer() { PyBuffer_Release(&view_); }

    std::string_view Bytes() const {
        return {static_cast<const char*>(view_.buf), static_cast<std::size_t>(view_.len)};
    }

  private:
    Py_buffer view_{};
};

}  // namespace dataengine::python
