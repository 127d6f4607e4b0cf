#pragma once

#include <VxUtil/vxJson.h>

#include <string>

#include "contracts/IJsonSerialize.h"

/// A query for a table by name, with free-form parameters.
///
/// Setters copy their arguments. Returned references remain valid for the lifetime of the object.
///
/// Thread safety: not safe for concurrent use.
class DATAENGINE_EXPORT CDETableQueryInfo : public IJsonSerialize {
  public:
    /// Constructs an empty name and null parameters.
    CDETableQueryInfo();
    /// A moved-from object has an empty name and keeps its parameters. Self-assignment has no
    /// effect.
    /// @{
    CDETableQueryInfo(const CDETableQueryInfo&) = default;
    CDETableQueryInfo& operator=(const CDETableQueryInfo&) = default;
    CDETableQueryInfo(CDETableQueryInfo&& other);
    CDETableQueryInfo& operator=(CDETableQueryInfo&& other);
    /// @}

    /// The name of the requested table. @{
    const std::string& GetTableName() const { return tableName_; }
    void SetTableName(const std::string& tableName) { tableName_ = tableName; }
    /// @}

    /// The free-form parameters. @{
    const vxJson::Value& GetParams() const { return params_; }
    void SetParams(const vxJson::Value& params) { params_ = params; }
    /// @}

    /// Reads the table's name from "name" and the parameters from "param".
    bool LoadFromJson(const vxJson::Value& source) override;
    /// Writes the same two keys.
    bool SaveToJson(vxJson::Value& target) const override;

  private:
    std::string tableName_;
    vxJson::Value params_;
};
