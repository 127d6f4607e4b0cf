#include <unordered_set>
#include <utility>
#include <vector>

#include "python/src/Buffer.h"
#include "python/src/Values.h"

namespace dataengine::python {
namespace {

/// The types that are looked up once. They are never released: the interpreter may end before the
/// destructors of this library run.
struct Types {
    PyObject* datetime;
    PyObject* timedelta;
    PyObject* epoch;
    PyObject* millisecond;
    PyObject* numpyScalar;
    PyObject* numpyTime;
    PyObject* numpyDuration;
};
Types types;

bool IsInstance(const py::handle& object, PyObject* type) {
    const int result = PyObject_IsInstance(object.ptr(), type);
    if (result < 0) throw py::error_already_set();
    return result != 0;
}

std::string TypeName(const py::handle& object) {
    return Py_TYPE(object.ptr())->tp_name;
}

[[noreturn]] void RejectType(const py::handle& object) {
    throw py::type_error("a value of type " + TypeName(object) + " has no counterpart");
}

vxJson::Value FromInteger(const py::handle& object) {
    int overflow = 0;
    const long long number = PyLong_AsLongLongAndOverflow(object.ptr(), &overflow);
    if (overflow == 0) {
        if (number == -1 && PyErr_Occurred() != nullptr) throw py::error_already_set();
        return number;
    }
    if (overflow > 0) {
        const unsigned long long positive = PyLong_AsUnsignedLongLong(object.ptr());
        if (PyErr_Occurred() == nullptr) return positive;
        PyErr_Clear();
    }
    PyErr_SetString(PyExc_OverflowError, "an integer is outside -2^63 to 2^64-1");
    throw py::error_already_set();
}

/// Converts an object that is not a container.
vxJson::Value FromScalar(const py::handle& object, Kinds kinds) {
    if (object.is_none()) return vxJson::Value();
    if (PyBool_Check(object.ptr())) return vxJson::Value(object.is(py::handle(Py_True)));
    if (PyLong_Check(object.ptr())) return FromInteger(object);
    if (PyFloat_Check(object.ptr())) return vxJson::Value(PyFloat_AS_DOUBLE(object.ptr()));
    if (PyUnicode_Check(object.ptr())) return vxJson::Value(FromText(object.ptr()));
    if (kinds == Kinds::kJson || IsInstance(object, types.numpyTime) ||
        IsInstance(object, types.numpyDuration))
        RejectType(object);
    if (PyBytes_Check(object.ptr()) || PyByteArray_Check(object.ptr()) ||
        PyMemoryView_Check(object.ptr()))
        return vxJson::Value::Binary(FromBytes(object));
    if (IsInstance(object, types.datetime)) return vxJson::Value::Time(FromTime(object));
    RejectType(object);
}

/// Returns the scalar of a NumPy scalar; any other object unchanged.
py::object Plain(const py::handle& object) {
    if (!PyFloat_Check(object.ptr()) && !PyUnicode_Check(object.ptr()) &&
        !PyLong_Check(object.ptr()) && !PyBytes_Check(object.ptr()) && !object.is_none() &&
        IsInstance(object, types.numpyScalar) && !IsInstance(object, types.numpyTime) &&
        !IsInstance(object, types.numpyDuration)) {
        py::object plain = object.attr("item")();
        if (IsInstance(plain, types.numpyScalar)) RejectType(object);
        return plain;
    }
    return py::reinterpret_borrow<py::object>(object);
}

/// A container that is being converted. The items of a dict are read from a copy, so that Python
/// code which runs meanwhile cannot change them.
struct Level {
    py::object container;
    py::object items;  // a list or tuple; of pairs if the container is a dict
    Py_ssize_t next;
    vxJson::Value* target;
};

class Builder {
  public:
    explicit Builder(Kinds kinds) : kinds_(kinds) {}

    vxJson::Value Build(const py::handle& root) {
        vxJson::Value value;
        Add(root, value);
        while (!open_.empty()) {
            Level& level = open_.back();
            if (level.next >= PySequence_Fast_GET_SIZE(level.items.ptr())) {
                entered_.erase(level.container.ptr());
                open_.pop_back();
                continue;
            }
            const auto item = py::reinterpret_borrow<py::object>(
                PySequence_Fast_GET_ITEM(level.items.ptr(), level.next++));
            if (level.target->isArray()) {
                Add(item, level.target->append(vxJson::Value()));
            } else {
                const std::string key = FromText(PyTuple_GET_ITEM(item.ptr(), 0));
                Add(py::handle(PyTuple_GET_ITEM(item.ptr(), 1)), (*level.target)[key]);
            }
        }
        return value;
    }

  private:
    void Add(const py::handle& given, vxJson::Value& target) {
        const py::object object = Plain(given);
        if (PyList_Check(object.ptr()) || PyTuple_Check(object.ptr())) {
            Enter(object, object, target, vxJson::arrayKind);
        } else if (PyDict_Check(object.ptr())) {
            Enter(object, Own(PyDict_Items(object.ptr())), target, vxJson::objectKind);
        } else {
            target = FromScalar(object, kinds_);
        }
    }

    void Enter(const py::object& container, py::object items, vxJson::Value& target,
               vxJson::ValueType kind) {
        if (!entered_.insert(container.ptr()).second)
            throw py::value_error("a container contains itself");
        target = vxJson::Value(kind, false);
        open_.push_back({container, std::move(items), 0, &target});
    }

    Kinds kinds_;
    std::vector<Level> open_;
    std::unordered_set<PyObject*> entered_;  // the containers of open_
};

/// Rejects a key of another type with its own message.
void RequireText(PyObject* text) {
    if (!PyUnicode_Check(text))
        throw py::type_error("a name or key is of type " + TypeName(text) + ", not str");
}

}  // namespace

py::object Own(PyObject* object) {
    if (object == nullptr) throw py::error_already_set();
    return py::reinterpret_steal<py::object>(object);
}

py::object ToText(std::string_view bytes) {
    return Own(PyUnicode_DecodeUTF8(bytes.data(), static_cast<Py_ssize_t>(bytes.size()),
                                    "surrogateescape"));
}

std::string FromText(PyObject* text) {
    RequireText(text);
    Py_ssize_t size = 0;
    const char* const bytes = PyUnicode_AsUTF8AndSize(text, &size);
    if (bytes != nullptr) return std::string(bytes, static_cast<std::size_t>(size));
    PyErr_Clear();
    const py::object encoded = Own(PyUnicode_AsEncodedString(text, "utf-8", "surrogateescape"));
    return encoded.cast<std::string>();
}

std::string FromBytes(const py::handle& object) {
    if (PyUnicode_Check(object.ptr())) return FromText(object.ptr());
    const Buffer buffer(object);
    return std::string(buffer.Bytes());
}

py::object ToTime(long long milliseconds) {
    constexpr long long kDay = 24LL * 60 * 60 * 1000;
    // timedelta(days, seconds, microseconds, milliseconds) counts days within its own bounds.
    const py::object delta =
        py::handle(types.timedelta)(milliseconds / kDay, 0, 0, milliseconds % kDay);
    return Own(PyNumber_Add(types.epoch, delta.ptr()));
}

long long FromTime(const py::handle& time) {
    if (!IsInstance(time, types.datetime))
        throw py::type_error("a time is of type " + TypeName(time) + ", not datetime");
    if (time.attr("tzinfo").is_none()) throw py::value_error("a datetime has no time zone");
    const py::object delta = Own(PyNumber_Subtract(time.ptr(), types.epoch));
    return Own(PyNumber_FloorDivide(delta.ptr(), types.millisecond)).cast<long long>();
}

vxJson::Value FromPython(const py::handle& object, Kinds kinds) {
    return Builder(kinds).Build(object);
}

void ImportTypes() {
    const py::module_ datetime = py::module_::import("datetime");
    const py::module_ numpy = py::module_::import("numpy");
    const py::object type = datetime.attr("datetime");
    types.epoch =
        type(1970, 1, 1, py::arg("tzinfo") = datetime.attr("timezone").attr("utc")).release().ptr();
    types.datetime = py::object(type).release().ptr();
    types.timedelta = py::object(datetime.attr("timedelta")).release().ptr();
    types.millisecond = py::handle(types.timedelta)(py::arg("milliseconds") = 1).release().ptr();
    types.numpyScalar = py::object(numpy.attr("generic")).release().ptr();
    types.numpyTime = py::object(numpy.attr("datetime64")).release().ptr();
    types.numpyDuration = py::object(numpy.attr("timedelta64")).release().ptr();
}

}  // namespace dataengine::python
