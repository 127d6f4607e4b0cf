#include <cstdint>
#include <vector>

#include "python/src/Values.h"

namespace dataengine::python {
namespace {

/// The entries of an array or object that are not yet converted. @{
class DocumentEntries {
  public:
    explicit DocumentEntries(const rapidjson::Value& container) {
        if (container.IsArray()) {
            element_ = container.Begin();
            end_ = container.End();
        } else {
            member_ = container.MemberBegin();
            lastMember_ = container.MemberEnd();
        }
    }
    bool Done() const { return element_ == end_ && member_ == lastMember_; }
    const rapidjson::Value& Element() { return *element_++; }
    std::string_view Key() const {
        return {member_->name.GetString(), member_->name.GetStringLength()};
    }
    const rapidjson::Value& Member() { return (member_++)->value; }

  private:
    const rapidjson::Value* element_ = nullptr;
    const rapidjson::Value* end_ = nullptr;
    rapidjson::Value::ConstMemberIterator member_;
    rapidjson::Value::ConstMemberIterator lastMember_;
};

class ValueEntries {
  public:
    explicit ValueEntries(const vxJson::Value& container)
        : next_(container.begin()), end_(container.end()) {}
    bool Done() const { return next_ == end_; }
    const vxJson::Value& Element() { return Advance(); }
    std::string_view Key() const { return next_.key(); }
    const vxJson::Value& Member() { return Advance(); }

  private:
    const vxJson::Value& Advance() {
        const vxJson::Value& entry = *next_;
        ++next_;
        return entry;
    }

    vxJson::ValueConstIterator next_;
    vxJson::ValueConstIterator end_;
};
/// @}

DocumentEntries EntriesOf(const rapidjson::Value& container) {
    return DocumentEntries(container);
}
ValueEntries EntriesOf(const vxJson::Value& container) {
    return ValueEntries(container);
}

bool IsArray(const rapidjson::Value& value) {
    return value.IsArray();
}
bool IsArray(const vxJson::Value& value) {
    return value.isArray();
}
bool IsContainer(const rapidjson::Value& value) {
    return value.IsArray() || value.IsObject();
}
bool IsContainer(const vxJson::Value& value) {
    return value.isArray() || value.isObject();
}

PyObject* NewList(std::uint32_t size) {
    return PyList_New(static_cast<Py_ssize_t>(size));
}

/// Return a new reference to the object of a scalar, or to a list or dict that is not yet filled;
/// null with a Python error set if it fails. @{
PyObject* NewObject(const rapidjson::Value& value) {
    switch (value.GetType()) {
        case rapidjson::kNullType:
            return py::none().release().ptr();
        case rapidjson::kFalseType:
        case rapidjson::kTrueType:
            return PyBool_FromLong(value.IsTrue() ? 1 : 0);
        case rapidjson::kStringType:
            return ToText({value.GetString(), value.GetStringLength()}).release().ptr();
        case rapidjson::kArrayType:
            return NewList(value.Size());
        case rapidjson::kObjectType:
            return PyDict_New();
        default:
            if (value.IsInt64()) return PyLong_FromLongLong(value.GetInt64());
            if (value.IsUint64()) return PyLong_FromUnsignedLongLong(value.GetUint64());
            return PyFloat_FromDouble(value.GetDouble());
    }
}

PyObject* NewObject(const vxJson::Value& value) {
    switch (value.type()) {
        case vxJson::boolKind:
            return PyBool_FromLong(value.asBool() ? 1 : 0);
        case vxJson::integerKind:
            // Of an integer above 2^63-1, asInt64 returns the low bits.
            if (value.asInt64() < 0 && !(value < vxJson::Value(0)))
                return PyLong_FromUnsignedLongLong(
                    static_cast<unsigned long long>(value.asInt64()));
            return PyLong_FromLongLong(value.asInt64());
        case vxJson::doubleKind:
            return PyFloat_FromDouble(value.asDouble());
        case vxJson::stringKind:
            return ToText(value.asBinary()).release().ptr();
        case vxJson::binaryKind:
            return PyBytes_FromStringAndSize(value.asBinary().data(),
                                             static_cast<Py_ssize_t>(value.asBinary().size()));
        case vxJson::timeKind:
            return ToTime(value.asTime()).release().ptr();
        case vxJson::arrayKind:
            return NewList(value.size());
        case vxJson::objectKind:
            return PyDict_New();
        default:
            return py::none().release().ptr();
    }
}
/// @}

/// A list or dict that is being filled. Its parent, or the caller, owns it.
template <typename Entries>
struct Level {
    Entries entries;
    PyObject* object;
    Py_ssize_t filled;  // elements of a list; -1 for a dict
};

template <typename Value>
py::object Convert(const Value& root, std::size_t depth) {
    py::object result = Own(NewObject(root));
    if (!IsContainer(root)) return result;
    using Entries = decltype(EntriesOf(root));
    std::vector<Level<Entries>> open;
    open.push_back({EntriesOf(root), result.ptr(), IsArray(root) ? 0 : -1});
    while (!open.empty()) {
        Level<Entries>& level = open.back();
        if (level.entries.Done()) {
            open.pop_back();
            continue;
        }
        const bool isList = level.filled >= 0;
        py::object key;
        if (!isList) key = ToText(level.entries.Key());
        const Value& value = isList ? level.entries.Element() : level.entries.Member();
        py::object object = Own(NewObject(value));
        PyObject* const borrowed = object.ptr();
        if (isList) {
            PyList_SET_ITEM(level.object, level.filled++, object.release().ptr());
        } else if (PyDict_SetItem(level.object, key.ptr(), borrowed) != 0) {
            throw py::error_already_set();
        }
        if (!IsContainer(value)) continue;
        if (open.size() == depth)
            throw FrameFailure("a value nests deeper than " + std::to_string(depth) + " levels");
        open.push_back({EntriesOf(value), borrowed, IsArray(value) ? 0 : -1});
    }
    return result;
}

}  // namespace

py::object ToPython(const vxJson::Value& value) {
    return Convert(value, kAnyDepth);
}

py::object ToPython(const rapidjson::Value& value, std::size_t depth) {
    return Convert(value, depth);
}

}  // namespace dataengine::python
