#include "tools/dataengine/Mapping.h"

#include <VxUtil/vxJson.h>

#include "tools/dataengine/Failure.h"
#include "tools/dataengine/Files.h"
#include "variables/VariableMappingDAO.h"

namespace tool {
namespace {

std::map<DDKey, DDKey> FromPairs(const rapidjson::Document& pairs, const std::string& path,
                                 const std::string& parser) {
    std::map<DDKey, DDKey> mapping;
    for (const auto& pair : pairs.GetObject()) {
        const std::string wanted(pair.name.GetString(), pair.name.GetStringLength());
        if (!pair.value.IsString())
            throw Failure(Shown(path) + ": " + wanted + ": is not the name of a variable");
        mapping[DDKey("", wanted)] = DDKey(parser, pair.value.GetString());
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
            throw Failure(Shown(path) + ": mapping document " + std::to_string(i) + ": " +
                          error.what());
        }
        for (const MappingInstance& instance : document.GetAllMappingVariable()) {
            // The parser keeps the keys of several parsers' variables of one path apart.
            mapping[DDKey(instance.parserPath, document.GetGvPath())] =
                DDKey(instance.parserPath, instance.varFullName);
        }
    }
    return mapping;
}

}  // namespace

std::map<DDKey, DDKey> ReadMapping(const std::string& path, const std::string& parser) {
    if (path.empty()) return {};
    const std::string text = ReadFile(path);
    const rapidjson::Document document = ParseJson(path, text);
    if (document.IsObject()) return FromPairs(document, path, parser);
    if (document.IsArray()) return FromDocuments(ParseValue(path, text), path);
    throw Failure(Shown(path) + ": is neither an object of names nor an array of mappings");
}

}  // namespace tool
