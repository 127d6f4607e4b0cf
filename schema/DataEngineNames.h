#pragma once

#include <string>

#include "contracts/DataEngineExport.h"

/// The names in the data engine's own records.
///
/// Each row of schema/names/DataEngine.def is one constant, in a namespace for its record:
/// `DataEngineNames::MetaRecord::devId` is "devId". Equal texts of two records are two constants.
///
/// Each name is a `const std::string&`. The strings are built when the library is loaded, before
/// any other code of it runs, and last until it is unloaded. Including this header adds no static
/// initializers and does not affect macros of the program.
///
/// Thread safety: any thread may read the names at any time.
namespace DataEngineNames {
#define DATAENGINE_ROWS "schema/names/DataEngine.def"
#include "schema/detail/Declare.def"
}  // namespace DataEngineNames
