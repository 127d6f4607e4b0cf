#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "contracts/DataEngineExport.h"
#include "variables/DDKey.h"

/// For each key the variables that it is mapped to, in the order in which they were added. The
/// same variable can stand there more than once: nothing removes duplicates.
///
/// A move is a copy: the source keeps its mapping.
///
/// Thread rule: any number of threads may read an object while none writes it. GetAllMappedParsers
/// and Size read only, although they are not const.
class DATAENGINE_EXPORT CVariableMapping {
  public:
    /// No keys.
    CVariableMapping() = default;

    /// Copies the whole map.
    CVariableMapping(const std::map<DDKey, std::vector<DDKey>>& mapping) : mapping_(mapping) {}
    /// A deep copy. @{
    CVariableMapping(const CVariableMapping&) = default;
    CVariableMapping& operator=(const CVariableMapping&) = default;
    /// @}

    /// Adds `var` behind the variables of `key`, which is created if it is not there.
    void AddMappingVar(const DDKey& key, const DDKey& var);

    /// Adds all of `vars` behind the variables of `key`, which is created if it is not there, with
    /// no variable if `vars` is empty. `vars` may be a vector of this mapping. If memory runs out
    /// on the way, the variables added before stay.
    void AddMappingVars(const DDKey& key, const std::vector<DDKey>& vars);

    /// The whole mapping, valid while the object lives and stays unchanged.
    const std::map<DDKey, std::vector<DDKey>>& GetAllMapping() const { return mapping_; }

    /// The parser paths of all mapped variables, the empty one included; those of the keys are not
    /// among them.
    std::set<std::string> GetAllMappedParsers();

    /// The number of keys, not of mapped variables.
    std::uint32_t Size() { return static_cast<std::uint32_t>(mapping_.size()); }

    /// Removes every key.
    void Clear() { mapping_.clear(); }

  private:
    std::map<DDKey, std::vector<DDKey>> mapping_;
};
