#pragma once

// Marks the symbols that libdataengine_bson.so exports; everything else in it is hidden.
#ifdef DATAENGINE_BSON_STATIC
#define DATAENGINE_BSON_EXPORT
#else
#define DATAENGINE_BSON_EXPORT __attribute__((visibility("default")))
#endif
