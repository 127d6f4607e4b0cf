#pragma once

#include <VxUtil/vxJson.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <string>

#include "tests/support/Ending.h"

/// The value of outputs before a call, by which unchanged outputs are recognized.
constexpr int kUntouched = 4711;

/// The outputs of GetBinaryDataInfo, and how the call ended.
struct Header {
    std::string ending;
    std::string name = "untouched";
    vxJson::Value schema{kUntouched};
    int offset = kUntouched;
};
Header ReadHeader(const std::string& blob);

/// Calls ParseBinaryDataToJson of the library and of TextRoute. Succeeds if both return the same
/// result or throw the same class of exception, with equal documents.
testing::AssertionResult SameDecodingOnBothDecoders(const std::string& buffer,
                                                    const vxJson::Value& schema,
                                                    const vxJson::Value& offsets,
                                                    const vxJson::Value& fields);

/// Decodes `packed` as the only leaf of a unit.
testing::AssertionResult SameValueOnBothDecoders(const std::string& packed);
