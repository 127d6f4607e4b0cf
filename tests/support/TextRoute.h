#pragma once

#include <VxUtil/vxJson.h>
#include <rapidjson/document.h>

#include <map>
#include <string>
#include <vector>

#include "variables/DDKey.h"

/// The road through text that defines every decoded document: unpack the object, print it, parse
/// the text. Slow and simple on purpose; the operations that the library has as well are told here
/// step by step, with its signatures, as the measure of what it gives.
///
/// Thread rule: no state; calls with distinct outputs run side by side.
class TextRoute {
  public:
    using Allocator = rapidjson::MemoryPoolAllocator<rapidjson::CrtAllocator>;

    static bool GetBinaryDataInfo(const std::string& blob, std::string& name, vxJson::Value& schema,
                                  int& offset);

    static bool ParseBinaryDataToJson(const char* buf, int len, const vxJson::Value& schema,
                                      const vxJson::Value& offsets, const vxJson::Value& fields,
                                      rapidjson::Document& out);

    static const vxJson::Value* GetChildItemByName(const std::string& name,
                                                   const vxJson::Value& list);

    /// Takes documents of any shape: a value that is no object has no members, a "name" that is no
    /// string reads as the empty name, a "type" that is no 32-bit integer as 0, a "column" that is
    /// no array has no columns. A new name replaces a value of any kind.
    static bool PostDataProcessing(const std::map<DDKey, DDKey>& mapping,
                                   const std::string& parserPath, rapidjson::Document& document,
                                   std::vector<std::string>& items);
};
