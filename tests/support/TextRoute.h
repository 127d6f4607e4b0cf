#pragma once

#include <VxUtil/vxJson.h>
#include <rapidjson/document.h>

#include <string>

/// The definition of every decoded document: unpack the value, print it with two decimals, parse
/// the text. Deliberately slow and simple. The functions mirror those of CDEStructureDataHelper.
///
/// Values are printed recursively, so deeply nested inputs overflow the stack.
namespace TextRoute {

const vxJson::Value* GetChildItemByName(const std::string& name, const vxJson::Value& list);

bool ParseBinaryDataToJson(const char* buf, int len, const vxJson::Value& schema,
                           const vxJson::Value& offsets, const vxJson::Value& fields,
                           rapidjson::Document& out);

}  // namespace TextRoute
