#pragma once

#include <rapidjson/document.h>

#include <string>

#include "structure/CDEStructureDataHelper.h"
#include "tests/support/Ending.h"
#include "tests/support/Texts.h"

/// Decodes packed bytes as the one leaf of a unit, into the "value" of the first element of
/// `document`. Returns the ending, as EndingOf does.
inline std::string DecodeLeaf(const std::string& bytes, rapidjson::Document& document) {
    static const vxJson::Value schema = Json(R"([{"name":"leaf","type":1,"index":0}])");
    static const vxJson::Value offsets = Json("[0]");
    const std::vector<char> exact = ExactBuffer(bytes);
    return EndingOf([&] {
        return CDEStructureDataHelper::ParseBinaryDataToJson(exact.data(),
                                                             static_cast<int>(exact.size()), schema,
                                                             offsets, vxJson::Value(), document);
    });
}
