#pragma once

#include <string>

#include "contracts/DataEngineExport.h"

/// The vocabulary of the document store: its operators, its collections, the fields of their
/// documents and a few fixed values.
///
/// Each row of schema/names/Store.def is one constant, in a namespace for its record or
/// sub-document: `StoreNames::TopoLink::localDevId` is "localDevId", `StoreNames::Operator::gt` is
/// "$gt". Equal texts of two records are two constants. Texts are spelled as the platform stores
/// them, misspellings included.
///
/// Each name is a `const std::string&`. The strings are built when the library is loaded, before
/// any other code of it runs, and last until it is unloaded. Including this header adds no static
/// initializers and does not affect macros of the program.
///
/// Thread safety: any thread may read the names at any time.
namespace StoreNames {
#define DATAENGINE_ROWS "schema/names/Store.def"
#include "schema/detail/Declare.def"
}  // namespace StoreNames
