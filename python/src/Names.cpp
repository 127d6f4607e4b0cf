#include "python/src/Module.h"

namespace dataengine::python {
namespace {

namespace py = pybind11;

/// A constant, or the beginning of a group or block, whose later fields are null.
struct Row {
    const char* group;
    const char* block;
    const char* id;
    const char* text;
};

constexpr Row kRows[] = {
    {"variable_mapping", nullptr, nullptr, nullptr},
#define TEXT(id, text) {nullptr, nullptr, #id, text},
#include "schema/names/VariableMapping.def"
    {"data_engine", nullptr, nullptr, nullptr},
#define BLOCK_BEGIN(block) {nullptr, #block, nullptr, nullptr},
#define TEXT(id, text) {nullptr, nullptr, #id, text},
#include "schema/names/DataEngine.def"
    {"store", nullptr, nullptr, nullptr},
#define BLOCK_BEGIN(block) {nullptr, #block, nullptr, nullptr},
#define TEXT(id, text) {nullptr, nullptr, #id, text},
#include "schema/names/Store.def"
};

/// Returns tuples of group, block, identifier and text. The variable mapping names have the block
/// "".
py::list Names() {
    py::list names;
    const char* group = "";
    const char* block = "";
    for (const Row& row : kRows) {
        if (row.group != nullptr) {
            group = row.group;
            block = "";
        } else if (row.block != nullptr) {
            block = row.block;
        } else {
            names.append(py::make_tuple(group, block, row.id, row.text));
        }
    }
    return names;
}

}  // namespace

void BindNames(py::module_& module) {
    module.def("names", &Names);
}

}  // namespace dataengine::python
