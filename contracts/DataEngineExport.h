#pragma once

#include "contracts/DataEngineStandardLibrary.h"

// Marks the symbols that libdataengine.so exports; everything else in it is hidden. The static
// library exports nothing from the program or the library that it is linked into.
#ifdef DATAENGINE_STATIC
#define DATAENGINE_EXPORT
#else
#define DATAENGINE_EXPORT __attribute__((visibility("default")))
#endif
