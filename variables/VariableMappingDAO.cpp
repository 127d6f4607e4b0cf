#include "variables/VariableMappingDAO.h"

#include <cstddef>

#include "schema/VariableMappingNames.h"

namespace keys = VariableMappingNames;

namespace {

bool StartsWithMark(const std::string& name) {
    return !name.empty() && name.front() == '$';
}

/// "$ifTable.$speed" with "$speed" becomes "ifTable.speed" with "speed". Applies only if
/// `varName` starts with '$'; it replaces everything after the first ".$" of the full name.
void NormaliseNames(EMappingType mappingType, MappingInstance& instance) {
    std::string& name = instance.varName;
    std::string& fullName = instance.varFullName;
    if (!StartsWithMark(name)) return;
    name.erase(0, 1);

    if (mappingType == MappingTypeVariable || mappingType == MappingTypeVariable1) {
        fullName = name;
    } else if (mappingType == MappingTypeTableColumn) {
        const std::size_t column = fullName.find(".$");
        if (column != std::string::npos) fullName.replace(column + 1, std::string::npos, name);
        if (StartsWithMark(fullName)) fullName.erase(0, 1);
    }
}

MappingInstance LoadInstance(const vxJson::Value& source, EMappingType mappingType) {
    MappingInstance instance;
    const vxJson::Value& deviceTypes = source[keys::deviceType];
    for (std::uint32_t i = 0; i < deviceTypes.size(); ++i) {
        instance.deviceType.insert(deviceTypes[static_cast<int>(i)].asInt());
    }
    instance.parserPath = source[keys::parserPath].asString();
    instance.parserName = source[keys::parserName].asString();
    instance.bizType = source[keys::bizType].asString();
    instance.varFullName = source[keys::varFullName].asString();
    instance.varName = source[keys::varName].asString();
    NormaliseNames(mappingType, instance);
    return instance;
}

}  // namespace

bool VariableMappingDAO::LoadFromJson(const vxJson::Value& source) {
    id_ = source[keys::_id].asString();
    mappingType_ = static_cast<EMappingType>(source[keys::mappingType].asInt());
    gvPath_ = source[keys::gvPath].asString();
    const vxJson::Value& instances = source[keys::mappingVars];
    for (std::uint32_t i = 0; i < instances.size(); ++i) {
        mappingVars_.push_back(LoadInstance(instances[static_cast<int>(i)], mappingType_));
    }
    return true;
}
