#pragma once

#include <string>

#include "contracts/DataEngineExport.h"

/// The names that the data engine's own records are written with.
///
/// One constant for each row of schema/names/DataEngine.def, in a namespace for the record it
/// belongs to: `DataEngineNames::MetaRecord::devId` is "devId". Equal texts of two records are two
/// constants.
///
/// Each name is a `const std::string&`. The strings are built when the library is loaded, before
/// any other code of it runs, and last until it is unloaded; a source that includes this header
/// initialises nothing. Any thread may read them.
namespace DataEngineNames {
#define BLOCK_BEGIN(block) namespace block {
#define BLOCK_END(block) }
#define TEXT(id, text) extern DATAENGINE_EXPORT const std::string& id;
#include "schema/names/DataEngine.def"
}  // namespace DataEngineNames
