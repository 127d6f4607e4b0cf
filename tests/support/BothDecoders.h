#pragma once

#include <VxUtil/vxJson.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <string>

#include "tests/support/Ending.h"

/// What the outputs hold before a call, so that an output left alone can be told.
constexpr int kUntouched = 4711;

/// What the library reads from the header of a packed buffer, and how that ended.
struct Header {
    std::string ending;
    std::string name = "untouched";
    vxJson::Value schema{kUntouched};
    int offset = kUntouched;
};
Header ReadHeader(const std::string& blob);

/// Calls ParseBinaryDataToJson and the same of TextRoute. Succeeds if they end alike, with the same
/// result or an exception of the same class, and with equal documents.
testing::AssertionResult SameDecodingOnBothDecoders(const std::string& buffer,
                                                    const vxJson::Value& schema,
                                                    const vxJson::Value& offsets,
                                                    const vxJson::Value& fields);

/// Decodes `packed` as the only leaf of a unit.
testing::AssertionResult SameValueOnBothDecoders(const std::string& packed);
