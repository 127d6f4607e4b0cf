#pragma once

#include <pybind11/pybind11.h>

namespace dataengine::python {

/// Leaves only functions of this module to make objects of a class: objects that Python code makes
/// with __new__ would hold nothing.
template <typename Class>
void Seal(Class& type) {
    reinterpret_cast<PyTypeObject*>(type.ptr())->tp_new = nullptr;
}

/// Each adds the classes and functions of one source to the module. @{
void BindNames(pybind11::module_& module);
void BindReading(pybind11::module_& module);
void BindRecords(pybind11::module_& module);
void BindWriting(pybind11::module_& module);
/// @}

}  // namespace dataengine::python
