#pragma once

#include <VxUtil/vxJson.h>
#include <pybind11/pybind11.h>
#include <rapidjson/document.h>

#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>

namespace dataengine::python {

namespace py = pybind11;

/// Throws the Python error that is set if `object` is null; takes ownership of it otherwise.
py::object Own(PyObject* object);

/// Returns the str of these bytes. Bytes that are not UTF-8 become surrogate escapes.
py::object ToText(std::string_view bytes);

/// Returns the bytes of a str, the reverse of ToText. Throws TypeError for any other object, and
/// UnicodeEncodeError for a surrogate that is not an escape.
std::string FromText(PyObject* text);

/// Returns the aware datetime of `milliseconds` since the Unix epoch. Throws OverflowError for a
/// year outside 1 to 9999.
py::object ToTime(long long milliseconds);

/// Returns the milliseconds of a datetime, rounded down. Throws ValueError for one without a time
/// zone.
long long FromTime(const py::handle& time);

/// Thrown for frames that cannot be read; becomes dataengine.FrameError.
class FrameFailure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

constexpr std::size_t kAnyDepth = std::numeric_limits<std::size_t>::max();

/// Convert a value to dict, list, str, int, float, bool, None, bytes and datetime. Throw
/// FrameFailure if it nests deeper than `depth` levels, which is otherwise bounded by memory only.
/// @{
py::object ToPython(const vxJson::Value& value);
py::object ToPython(const rapidjson::Value& value, std::size_t depth = kAnyDepth);
/// @}

/// Converts an object of the above types, or a tuple, or a scalar of NumPy. Bytes-like objects
/// become binary. Throws TypeError for other types and for keys that are not str, OverflowError for
/// an integer outside -2^63 to 2^64-1, ValueError for a container that contains itself. With kJson,
/// bytes and times are of another type too. Depth is bounded by memory only.
enum class Kinds { kAll, kJson };
vxJson::Value FromPython(const py::handle& object, Kinds kinds = Kinds::kAll);

/// Returns a copy of the bytes of a bytes-like object, or of a str as FromText does.
std::string FromBytes(const py::handle& object);

/// Looks up the Python types that the conversions use. Called once, when the module is imported.
void ImportTypes();

}  // namespace dataengine::python
