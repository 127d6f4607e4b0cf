#pragma once

// Marks what libVxUtil.so exports; everything else in it is hidden.
#define VXUTIL_EXPORT __attribute__((visibility("default")))
