#pragma once

#include <VxUtil/vxJson.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "contracts/DataEngineExport.h"

/// What a mapping document maps. The underlying type is fixed, so every 32-bit number of a document
/// is a legal value.
enum EMappingType : std::int32_t {
    MappingTypeVariable = 0,    ///< A single variable.
    MappingTypeVariable1 = 1,   ///< The same as MappingTypeVariable.
    MappingTypeTableColumn = 2  ///< A column of a table.
};

/// One parser variable of a mapping and the device types that it serves. A plain value.
///
/// Thread rule: an object belongs to one thread at a time.
struct DATAENGINE_EXPORT MappingInstance {
    std::set<int> deviceType;  ///< The device types that it serves.
    std::string parserPath;    ///< The path of the parser.
    std::string parserName;    ///< The name of the parser.
    std::string bizType;       ///< The business type, as stored.
    std::string varName;       ///< Without its leading '$' once loaded.
    std::string varFullName;   ///< In the form in which decoded documents name their items.
};

/// A view of one stored variable mapping document: under a variable's path it lists the parser
/// variables that supply that variable.
///
/// A load brings stored names into the form of decoded documents: no '$' marks, a table column as
/// table name, '.', column name. It replaces the texts and the type and adds to the instances.
/// There are no setters and no save, all results are copies, and a move is a copy too. Nothing but
/// a copy gives the time stamp a value: do not rely on it.
///
/// Thread rule: an object belongs to one thread at a time.
class DATAENGINE_EXPORT VariableMappingDAO {
  public:
    /// Empty texts and no instances.
    VariableMappingDAO() = default;

    /// Copies every field. @{
    VariableMappingDAO(const VariableMappingDAO&) = default;
    VariableMappingDAO& operator=(const VariableMappingDAO&) = default;
    /// @}

    /// Reads "_id", "mappingType", "gvPath" and "mappingVars". Returns true. What a conversion
    /// throws loses the instance at hand; everything read before stays.
    bool LoadFromJson(const vxJson::Value& source);

    /// The document's identifier.
    std::string GetId() const { return id_; }
    /// What the document maps. Load it before it is read.
    EMappingType GetMappingType() const { return mappingType_; }
    /// The path of the variable that the document maps.
    std::string GetGvPath() const { return gvPath_; }
    /// Of no meaning: nothing sets it.
    long long GetTimeStamp() const { return timeStamp_; }
    /// A copy of all instances, in document order.
    std::vector<MappingInstance> GetAllMappingVariable() const { return mappingVars_; }
    /// The number of instances.
    int GetMappingSize() const { return static_cast<int>(mappingVars_.size()); }

  private:
    std::string id_;
    EMappingType mappingType_ = MappingTypeVariable;
    std::vector<MappingInstance> mappingVars_;
    long long timeStamp_ = 0;
    std::string gvPath_;
};
