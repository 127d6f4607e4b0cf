#pragma once

#include <VxUtil/vxJson.h>

#include <string>

#include "contracts/IJsonSerialize.h"

/// Asks for a table by its name, with free-form parameters.
///
/// Setters copy; references that getters return lead into the object and live as long as it.
///
/// Thread rule: an object belongs to one thread at a time.
class DATAENGINE_EXPORT CDETableQueryInfo : public IJsonSerialize {
  public:
    /// An empty name and null parameters.
    CDETableQueryInfo();
    /// A move leaves the source's name empty and its parameters as they were. An assignment from
    /// itself changes nothing. @{
    CDETableQueryInfo(const CDETableQueryInfo&) = default;
    CDETableQueryInfo& operator=(const CDETableQueryInfo&) = default;
    CDETableQueryInfo(CDETableQueryInfo&& other);
    CDETableQueryInfo& operator=(CDETableQueryInfo&& other);
    /// @}

    /// The table asked for. @{
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
