#pragma once

#include <VxUtil/VX128Guid.h>
#include <rapidjson/document.h>

#include <ostream>

#include "tests/support/Texts.h"
#include "variables/DDKey.h"

// How GoogleTest shows what it would else show as bytes.

inline void PrintTo(const VX128Guid& guid, std::ostream* output) {
    *output << guid.ToUUIDString(true);
}

inline void PrintTo(const DDKey& key, std::ostream* output) {
    *output << "parser \"" << key.GetParserPath() << "\", variable \"" << key.GetVarFullName()
            << '"';
}

RAPIDJSON_NAMESPACE_BEGIN

inline void PrintTo(const Value& value, std::ostream* output) {
    *output << Text(value);
}

RAPIDJSON_NAMESPACE_END
