#pragma once

#include <rapidjson/document.h>

#include "contracts/RapidJsonSettings.h"

// Later snapshots of rapidjson report version 1.1.0 too, but have different pools and documents.
static_assert(sizeof(::rapidjson::Value) == (RAPIDJSON_48BITPOINTER_OPTIMIZATION ? 16 : 24) &&
                  sizeof(::rapidjson::Document::AllocatorType) == 40 &&
                  sizeof(::rapidjson::Document) == sizeof(::rapidjson::Value) + 80,
              "libdataengine is built with the classes of rapidjson 1.1.0 as it was released");
