#pragma once

#include <VxUtil/VxUtilStandardLibrary.h>

// Marks the symbols that libVxUtil.so exports; everything else in it is hidden. The static library
// exports nothing from the program or the library that it is linked into.
#ifdef VXUTIL_STATIC
#define VXUTIL_EXPORT
#else
#define VXUTIL_EXPORT __attribute__((visibility("default")))
#endif
