#pragma once

#include <rapidjson/document.h>

#include <string>

#include "structure/CDEStructureDataHelper.h"
#include "tests/support/Texts.h"

/// Decodes packed bytes as the one leaf of a unit and returns the leaf's value.
inline const rapidjson::Value& DecodeLeaf(const std::string& bytes, rapidjson::Document& document) {
    static const vxJson::Value schema = Json(R"([{"name":"leaf","type":1,"index":0}])");
    static const vxJson::Value offsets = Json("[0]");
    CDEStructureDataHelper::ParseBinaryDataToJson(bytes.data(), static_cast<int>(bytes.size()),
                                                  schema, offsets, vxJson::Value(), document);
    return document[0]["value"];
}
