#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "contracts/DataEngineExport.h"
#include "variables/DDKey.h"

/// Maps each key to a list of variables, in the order in which they were added. Duplicates are
/// kept.
///
/// A move copies: the source keeps its mapping.
///
/// Thread safety: concurrent reads are safe, and GetAllMappedParsers and Size only read although
/// they are not const.
class DATAENGINE_EXPORT CVariableMapping {
  public:
    /// Constructs an empty mapping.
    CVariableMapping() = default;

    /// Copies the whole map.
    CVariableMapping(const std::map<DDKey, std::vector<DDKey>>& mapping) : mapping_(mapping) {}
    /// Copies the whole mapping. @{
    CVariableMapping(const CVariableMapping&) = default;
    CVariableMapping& operator=(const CVariableMapping&) = default;
    /// @}

    /// Appends `var` to the variables of `key`, which is created if absent.
    void AddMappingVar(const DDKey& key, const DDKey& var);

    /// Appends `vars` to the variables of `key`, which is created if absent, even if `vars` is
    /// empty. `vars` may be a vector of this mapping. If memory runs out, the variables appended so
    /// far stay.
    void AddMappingVars(const DDKey& key, const std::vector<DDKey>& vars);

    /// Returns the whole mapping. The reference remains valid for the lifetime of the object.
    const std::map<DDKey, std::vector<DDKey>>& GetAllMapping() const { return mapping_; }

    /// Returns the parser paths of all mapped variables, including an empty path, but not those of
    /// the keys.
    std::set<std::string> GetAllMappedParsers();

    /// Returns the number of keys, not of mapped variables.
    std::uint32_t Size() { return static_cast<std::uint32_t>(mapping_.size()); }

    /// Removes every key.
    void Clear() { mapping_.clear(); }

  private:
    std::map<DDKey, std::vector<DDKey>> mapping_;
};
