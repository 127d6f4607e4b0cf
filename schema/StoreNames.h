#pragma once

#include <string>

#include "contracts/DataEngineExport.h"

/// The vocabulary of the document store: its operators, its collections, the fields of their
/// documents and a few fixed values.
///
/// One constant for each row of schema/names/Store.def, in a namespace for the record or
/// sub-document it belongs to: `StoreNames::TopoLink::localDevId` is "localDevId",
/// `StoreNames::Operator::gt` is "$gt". Equal texts of two records are two constants. Texts stand
/// as the platform stores them, misspellings included.
///
/// Each name is a `const std::string&`. The strings are built when the library is loaded, before
/// any other code of it runs, and last until it is unloaded; a source that includes this header
/// initialises nothing. Any thread may read them.
namespace StoreNames {
#define BLOCK_BEGIN(block) namespace block {
#define BLOCK_END(block) }
#define TEXT(id, text) extern DATAENGINE_EXPORT const std::string& id;
#include "schema/names/Store.def"
}  // namespace StoreNames
