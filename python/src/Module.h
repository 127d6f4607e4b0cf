#pragma once

#include <pybind11/pybind11.h>

namespace dataengine::python {

/// Leaves only functions of this module to make objects of a class: objects that Python code makes
/// with __new__ would hold nothing. Pickle must not try: of an old protocol it calls the base class
/// of pybind11, which ends the process.
template <typename Class>
void Seal(Class& type) {
    reinterpret_cast<PyTypeObject*>(type.ptr())->tp_new = nullptr;
    const auto reject = [](const pybind11::object&, const pybind11::args&) -> pybind11::object {
        throw pybind11::type_error("the object cannot be copied or pickled");
    };
    type.def("__reduce__", reject);
    type.def("__reduce_ex__", reject);
}

/// Each adds the classes and functions of one source to the module. @{
void BindNames(pybind11::module_& module);
void BindReading(pybind11::module_& module);
void BindRecords(pybind11::module_& module);
void BindWriting(pybind11::module_& module);
/// @}

}  // namespace dataengine::python
