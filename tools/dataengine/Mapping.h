#pragma once

#include <map>
#include <string>

#include "variables/DDKey.h"

namespace tool {

/// Reads the wanted names of variables from the file `path`; an empty path gives none. The file
/// holds either an object {"wanted name": "variable", ...}, whose variables are all taken to be
/// those of `parser`, or an array of mapping documents as the store keeps them.
std::map<DDKey, DDKey> ReadMapping(const std::string& path, const std::string& parser);

}  // namespace tool
