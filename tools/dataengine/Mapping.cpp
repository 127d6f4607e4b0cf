#include "tools/dataengine/Mapping.h"

#include "tools/dataengine/Failure.h"
#include "variables/VariableMappingDAO.h"

namespace dataengine::tool {
namespace {

std::map<DDKey, DDKey> FromPairs(const vxJson::Value& pairs, const std::string& path,
                                 const std::string& parser) {
    std::map<DDKey, DDKey> mapping;
    for (const auto& [wanted, variable] : pairs.members()) {
        if (!variable.isString()) throw Failure(path, wanted + ": is not the name of a variable");
        mapping[DDKey("", wanted)] = DDKey(parser, variable.asString());
    }
    return mapping;
}

std::map<DDKey, DDKey> FromDocuments(const vxJson::Value& documents, const std::string& path) {
    std::map<DDKey, DDKey> mapping;
    for (int i = 0; i < static_cast<int>(documents.size()); ++i) {
        VariableMappingDAO document;
        try {
            document.LoadFromJson(documents[i]);
        } catch (const vxJson::Error& error) {
            throw Failure(path, "mapping document " + std::to_string(i) + ": " + error.what());
        }
        for (const MappingInstance& instance : document.GetAllMappingVariable()) {
            // The parser distinguishes the variables of several parsers for one path.
            mapping[DDKey(instance.parserPath, document.GetGvPath())] =
                DDKey(instance.parserPath, instance.varFullName);
        }
    }
    return mapping;
}

}  // namespace

std::map<DDKey, DDKey> ReadMapping(const vxJson::Value& value, const std::string& path,
                                   const std::string& parser) {
    if (value.isObject()) return FromPairs(value, path, parser);
    if (value.isArray()) return FromDocuments(value, path);
    throw Failure(path, "is neither an object of names nor an array of mappings");
}

}  // namespace dataengine::tool
