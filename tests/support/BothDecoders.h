#pragma once

#include <VxUtil/vxJson.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <map>
#include <string>

#include "tests/support/Ending.h"
#include "variables/DDKey.h"

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

// Each of these functions calls one operation of CDEStructureDataHelper and the same of TextRoute
// with equal arguments, and succeeds if they end alike: with the same result or an exception of the
// same class, and with equal outputs, those of a failed call included.

testing::AssertionResult SameHeaderOnBothDecoders(const std::string& blob);

testing::AssertionResult SameDecodingOnBothDecoders(const std::string& buffer,
                                                    const vxJson::Value& schema,
                                                    const vxJson::Value& offsets,
                                                    const vxJson::Value& fields);

/// Decodes `packed` as the one leaf of a unit.
testing::AssertionResult SameValueOnBothDecoders(const std::string& packed);

/// `document` is copied for each road.
testing::AssertionResult SameRenamingOnBothDecoders(const std::map<DDKey, DDKey>& mapping,
                                                    const std::string& parserPath,
                                                    const rapidjson::Value& document);
