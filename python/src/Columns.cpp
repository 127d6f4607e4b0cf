#include "python/src/Columns.h"

#include <pybind11/numpy.h>

#include <array>
#include <memory>
#include <utility>

#include "python/src/Values.h"

namespace dataengine::python {
namespace {

/// Returns an array that owns the vector.
template <typename Element>
py::array Adopt(std::vector<Element>& values, const py::dtype& type) {
    auto owner = std::make_unique<std::vector<Element>>(std::move(values));
    const auto size = static_cast<py::ssize_t>(owner->size());
    const Element* const data = owner->data();
    const py::capsule base(owner.get(),
                           [](void* vector) { delete static_cast<std::vector<Element>*>(vector); });
    static_cast<void>(owner.release());  // the capsule owns it
    return py::array(type, std::vector<py::ssize_t>{size}, data, base);
}

/// Returns an array of `size` objects and passes the place of each to `fill`.
template <typename Fill>
py::array NewObjects(std::size_t size, const Fill& fill) {
    const std::vector<py::ssize_t> shape = {static_cast<py::ssize_t>(size)};
    py::array array(py::dtype("O"), shape);
    auto* const objects = static_cast<PyObject**>(array.mutable_data());
    for (std::size_t i = 0; i < size; ++i) Py_XSETREF(objects[i], fill(i).release().ptr());
    return array;
}

/// Makes the str objects of a column. Few of the strings of a column differ, so the last ones are
/// kept and shared.
class TextPool {
  public:
    py::object Get(std::string_view text) {
        if (text.size() > kLongest) return ToText(text);
        Entry& entry = entries_[PlaceOf(text)];
        if (!entry.object || entry.text != text) entry = {text, ToText(text)};
        return entry.object;
    }

  private:
    static constexpr std::size_t kLongest = 32;

    struct Entry {
        std::string_view text;
        py::object object;
    };

    std::size_t PlaceOf(std::string_view text) const {
        return std::hash<std::string_view>()(text) % entries_.size();
    }

    std::array<Entry, 256> entries_;
};

py::object ValuesOf(PackedColumn& column, std::size_t depth) {
    if (auto* const values = std::get_if<std::vector<std::int64_t>>(&column.values))
        return Adopt(*values, py::dtype::of<std::int64_t>());
    if (auto* const values = std::get_if<std::vector<std::uint64_t>>(&column.values))
        return Adopt(*values, py::dtype::of<std::uint64_t>());
    if (auto* const values = std::get_if<std::vector<double>>(&column.values))
        return Adopt(*values, py::dtype::of<double>());
    if (auto* const values = std::get_if<PackedColumn::Booleans>(&column.values))
        return Adopt(*values, py::dtype::of<bool>());
    if (const auto* const values = std::get_if<PackedColumn::Texts>(&column.values)) {
        TextPool pool;
        return NewObjects(values->size(), [&](std::size_t i) -> py::object {
            if (!column.isNull.empty() && column.isNull[i] != 0) return py::none();
            return pool.Get((*values)[i]);
        });
    }
    const auto& value = std::get<rapidjson::Value>(column.values);
    if (!value.IsArray()) return ToPython(value, depth);
    return NewObjects(value.Size(), [&](std::size_t i) {
        return ToPython(value[static_cast<rapidjson::SizeType>(i)], depth);
    });
}

/// Returns the mask of a column: of a mixed array it is built here.
py::object MaskOf(PackedColumn& column) {
    const auto* const value = std::get_if<rapidjson::Value>(&column.values);
    if (value != nullptr && value->IsArray()) {
        bool any = false;
        column.isNull.resize(value->Size());
        for (rapidjson::SizeType i = 0; i < value->Size(); ++i) {
            column.isNull[i] = (*value)[i].IsNull() ? 1 : 0;
            any |= (*value)[i].IsNull();
        }
        if (!any) column.isNull.clear();
    }
    if (column.isNull.empty()) return py::none();
    return Adopt(column.isNull, py::dtype::of<bool>());
}

}  // namespace

py::list ToArrays(PackedTable& table, std::size_t depth) {
    py::list columns;
    for (PackedColumn& column : table.columns) {
        const py::object values = ValuesOf(column, depth);
        columns.append(py::make_tuple(ToText(column.name), values, MaskOf(column)));
    }
    return columns;
}

}  // namespace dataengine::python
