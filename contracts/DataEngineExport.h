#pragma once

// Marks what libdataengine.so exports; everything else in it is hidden.
#define DATAENGINE_EXPORT __attribute__((visibility("default")))
