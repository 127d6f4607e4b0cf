#pragma once

#include <string>

#include "contracts/DataEngineExport.h"

/// The names that the variable mapping and parser priority documents are written with.
///
/// One constant for each row of schema/names/VariableMapping.def, named after its text: `gvPath`
/// is "gvPath". `order` stands twice; priority documents are read through `order_2`.
///
/// Each name is a `const std::string&`. The strings are built when the library is loaded, before
/// any other code of it runs, and last until it is unloaded; a source that includes this header
/// initialises nothing. Any thread may read them.
namespace VariableMappingNames {
#define TEXT(id, text) extern DATAENGINE_EXPORT const std::string& id;
#include "schema/names/VariableMapping.def"
}  // namespace VariableMappingNames
