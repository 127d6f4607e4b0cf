#include "python/src/Module.h"

#include <VxUtil/vxJson.h>

#include <exception>

#include "contracts/DataEngineVersion.h"
#include "python/src/Frames.h"
#include "python/src/Values.h"

namespace dataengine::python {
namespace {

void SetError(const py::handle& type, const char* message) {
    PyErr_SetObject(type.ptr(), ToText(message).ptr());
}

/// Translates the exceptions of the library: a frame that cannot be read is a FrameError, anything
/// else that the library rejects a ValueError.
// NOLINTNEXTLINE(performance-unnecessary-value-param): the type that pybind11 calls
void Translate(std::exception_ptr error) {
    try {
        if (error) std::rethrow_exception(error);
    } catch (const FrameFailure& failure) {
        SetError(py::module_::import("dataengine").attr("FrameError"), failure.what());
    } catch (const vxJson::Error& failure) {
        SetError(PyExc_ValueError, failure.what());
    }
}

}  // namespace

void BindReading(py::module_& module) {
    py::class_<Reader, std::shared_ptr<Reader>> reader(module, "Reader", py::is_final());
    Seal(reader);
    reader.def("open", [](const std::shared_ptr<Reader>& self, const py::object& data) {
        return std::make_unique<Frame>(self, data);
    });
    reader.def("set_depth", &Reader::SetDepth);
    module.def("new_reader",
               [](const py::object& selection, const py::dict& mapping, const py::object& parser) {
                   return std::make_shared<Reader>(selection, mapping, parser);
               });
    py::class_<Frame> frame(module, "Frame", py::is_final());
    Seal(frame);
    frame.def("name", [](const Frame& self) { return ToText(self.Name()); })
        .def("header_length", &Frame::HeaderLength)
        .def("size", &Frame::Size)
        .def("schema", &Frame::Schema)
        .def("find_offsets", &Frame::Offsets)
        .def("decode", &Frame::Decode)
        .def("document", &Frame::Document)
        .def("check", &Frame::Check)
        .def("table", [](const Frame& self, const py::handle& name, const py::object& offsets) {
            return self.Table(FromText(name.ptr()), offsets);
        });
}

}  // namespace dataengine::python

PYBIND11_MODULE(_core, module) {
    using namespace dataengine::python;  // NOLINT(google-build-using-namespace): of this module
                                         // only
    ImportTypes();
    pybind11::register_exception_translator(&Translate);
    BindNames(module);
    BindReading(module);
    BindRecords(module);
    BindWriting(module);
    module.attr("version") = dataengine::Version();
}
