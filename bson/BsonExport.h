#pragma once

// Marks the symbols that libdataengine_bson.so exports; all others are hidden.
#ifdef DATAENGINE_BSON_STATIC
#define DATAENGINE_BSON_EXPORT
#else
#define DATAENGINE_BSON_EXPORT __attribute__((visibility("default")))
#endif
