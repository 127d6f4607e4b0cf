#pragma once

#include <pybind11/pybind11.h>

#include "structure/PackedTable.h"

namespace dataengine::python {

/// Returns a list with a tuple for each column: its name, its values and its mask. Vectors become
/// NumPy arrays that own them, strings and mixed arrays become arrays of objects, and a value that
/// is not an array stays itself. The mask is None if no value is missing. Values may
/// nest as deep as ToPython is told.
pybind11::list ToArrays(PackedTable& table, std::size_t depth);

}  // namespace dataengine::python
