#pragma once

#include "contracts/DataEngineExport.h"

// The build takes the version of the whole project from these lines.
#define DATAENGINE_VERSION_MAJOR 1
#define DATAENGINE_VERSION_MINOR 0
#define DATAENGINE_VERSION_PATCH 0

namespace dataengine {

/// Returns the version of the library in use as text, such as "1.0.0". It differs from the macros
/// if the program was compiled against another version.
DATAENGINE_EXPORT const char* Version() noexcept;

}  // namespace dataengine
