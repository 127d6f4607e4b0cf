#pragma once

#include <VxUtil/vxJson.h>

#include <string>

#include "contracts/IJsonSerialize.h"

/// Asks for a table by its name, with free-form parameters.
///
/// A move leaves the source's name empty and its parameters as they were.
///
/// Thread rule: an object belongs to one thread at a time.
class DATAENGINE_EXPORT CDETableQueryInfo : public IJsonSerialize {
  public:
    CDETableQueryInfo();
    CDETableQueryInfo(const CDETableQueryInfo&) = default;
    CDETableQueryInfo& operator=(const CDETableQueryInfo&) = default;
    // Written out for the source's empty name and kept parameters.
    CDETableQueryInfo(CDETableQueryInfo&& other);
    CDETableQueryInfo& operator=(CDETableQueryInfo&& other);

    const std::string& GetTableName() const { return tableName_; }
    void SetTableName(const std::string& tableName) { tableName_ = tableName; }

    const vxJson::Value& GetParams() const { return params_; }
    void SetParams(const vxJson::Value& params) { params_ = params; }

    /// Reads the table's name from "name" and the parameters from "param".
    bool LoadFromJson(const vxJson::Value& source) override;
    /// Writes the same two keys.
    bool SaveToJson(vxJson::Value& target) const override;

  private:
    std::string tableName_;
    vxJson::Value params_;
};
