#pragma once

#include <map>
#include <string>

#include "variables/DDKey.h"

namespace tool {

/// Reads the wanted names of variables from the file `path`; none if `path` is empty. The
/// file contains either an object {"wanted name": "variable", ...}, whose variables all belong to
/// `parser`, or an array of mapping documents as the store keeps them.
std::map<DDKey, DDKey> ReadMapping(const std::string& path, const std::string& parser);

}  // namespace tool
