#include "variables/CVariableMapping.h"

void CVariableMapping::AddMappingVar(const DDKey& key, const DDKey& var) {
    const auto found = mapping_.find(key);
    if (found == mapping_.end()) {
        mapping_.emplace(key, std::vector<DDKey>{var});
    } else {
        found->second.push_back(var);
    }
}

void CVariableMapping::AddMappingVars(const DDKey& key, const std::vector<DDKey>& vars) {
    const auto found = mapping_.find(key);
    if (found == mapping_.end()) {
        mapping_.emplace(key, vars);
        return;
    }
    // By index and with a fixed count, since `vars` may be the vector that grows here.
    const std::size_t count = vars.size();
    for (std::size_t i = 0; i < count; ++i) found->second.push_back(vars[i]);
}

std::set<std::string> CVariableMapping::GetAllMappedParsers() {
    std::set<std::string> parsers;
    for (const auto& [key, vars] : mapping_) {
        for (const DDKey& var : vars) parsers.insert(var.GetParserPath());
    }
    return parsers;
}
