#pragma once

#include <VxUtil/vxJson.h>

#include <map>
#include <string>

#include "variables/DDKey.h"

namespace dataengine::tool {

/// Returns the mapping in `value`: an object of wanted names and variables of `parser`, or an array
/// of mapping documents as the store keeps them. Throws Failure with `path` for anything else.
std::map<DDKey, DDKey> ReadMapping(const vxJson::Value& value, const std::string& path,
                                   const std::string& parser);

}  // namespace dataengine::tool
