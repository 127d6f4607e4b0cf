#pragma once

#include <VxUtil/vxJson.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "contracts/DataEngineExport.h"

/// The kind of variable that a document maps. The underlying type is fixed, so that every 32-bit
/// number is a legal value.
enum EMappingType : std::int32_t {
    MappingTypeVariable = 0,    ///< A single variable.
    MappingTypeVariable1 = 1,   ///< The same as MappingTypeVariable.
    MappingTypeTableColumn = 2  ///< A column of a table.
};

/// One parser variable of a mapping and the device types that it serves.
///
/// Thread safety: not safe for concurrent use.
struct DATAENGINE_EXPORT MappingInstance {
    std::set<int> deviceType;  ///< The device types that it serves.
    std::string parserPath;    ///< The path of the parser.
    std::string parserName;    ///< The name of the parser.
    std::string bizType;       ///< The business type, as stored.
    std::string varName;       ///< The name, without its leading '$' after a load.
    std::string varFullName;   ///< The full name, in the form of decoded documents.
};

/// A view of a stored variable mapping document, which lists the parser variables that supply the
/// variable at one path.
///
/// A load converts stored names to the form of decoded documents: no leading '$', a table column as
/// table name, '.', column name. It replaces the strings and the type and adds to the instances.
/// There are no setters and no save. Getters return copies. A move copies, so the source keeps its
/// content. Nothing sets the time stamp: do not rely on it.
///
/// Thread safety: not safe for concurrent use.
class DATAENGINE_EXPORT VariableMappingDAO {
  public:
    /// Constructs empty strings and no instances.
    VariableMappingDAO() = default;

    /// Copies every field. @{
    VariableMappingDAO(const VariableMappingDAO&) = default;
    VariableMappingDAO& operator=(const VariableMappingDAO&) = default;
    /// @}

    /// Reads "_id", "mappingType", "gvPath" and "mappingVars". Returns true. If a conversion
    /// throws, the current instance is lost and everything read before it stays.
    bool LoadFromJson(const vxJson::Value& source);

    /// Returns the document's identifier.
    std::string GetId() const { return id_; }
    /// Returns the kind of variable. Initially 0.
    EMappingType GetMappingType() const { return mappingType_; }
    /// Returns the path of the mapped variable.
    std::string GetGvPath() const { return gvPath_; }
    /// Returns a meaningless number: nothing sets the time stamp.
    long long GetTimeStamp() const { return timeStamp_; }
    /// Returns a copy of all instances, in document order.
    std::vector<MappingInstance> GetAllMappingVariable() const { return mappingVars_; }
    /// Returns the number of instances.
    int GetMappingSize() const { return static_cast<int>(mappingVars_.size()); }

  private:
    std::string id_;
    EMappingType mappingType_ = MappingTypeVariable;
    std::vector<MappingInstance> mappingVars_;
    long long timeStamp_ = 0;
    std::string gvPath_;
};
