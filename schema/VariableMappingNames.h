#pragma once

#include <string>

#include "contracts/DataEngineExport.h"

/// The names in variable mapping and parser priority documents.
///
/// Each row of schema/names/VariableMapping.def is one constant, named after its text: `gvPath` is
/// "gvPath". The text "order" occurs twice; priority documents use `order_2`.
///
/// Each name is a `const std::string&`. The strings are built when the library is loaded, before
/// any other code of it runs, and last until it is unloaded. Including this header adds no static
/// initializers and does not affect macros of the program.
///
/// Thread safety: any thread may read the names at any time.
namespace VariableMappingNames {
#define DATAENGINE_ROWS "schema/names/VariableMapping.def"
#include "schema/detail/Declare.def"
}  // namespace VariableMappingNames
