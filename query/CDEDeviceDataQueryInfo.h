#pragma once

#include <VxUtil/vxJson.h>

#include <string>

#include "contracts/IJsonSerialize.h"

/// A query for one unit of device data by device, data type, optional name and parameter. No field
/// is validated.
///
/// Setters copy their arguments. Returned references remain valid for the lifetime of the object.
///
/// Thread safety: not safe for concurrent use.
class DATAENGINE_EXPORT CDEDeviceDataQueryInfo : public IJsonSerialize {
  public:
    /// Constructs a query with empty strings and a null parameter.
    CDEDeviceDataQueryInfo();
    /// A moved-from object has empty strings and keeps its parameter. Self-assignment has no
    /// effect.
    /// @{
    CDEDeviceDataQueryInfo(const CDEDeviceDataQueryInfo&) = default;
    CDEDeviceDataQueryInfo& operator=(const CDEDeviceDataQueryInfo&) = default;
    CDEDeviceDataQueryInfo(CDEDeviceDataQueryInfo&& other);
    CDEDeviceDataQueryInfo& operator=(CDEDeviceDataQueryInfo&& other);
    /// @}

    /// The name of the requested unit, optional. @{
    const std::string& GetName() const { return name_; }
    void SetName(const std::string& name) { name_ = name; }
    /// @}

    /// The free-form parameter. @{
    const vxJson::Value& GetParam() const { return param_; }
    void SetParam(const vxJson::Value& param) { param_ = param; }
    /// @}

    /// The requested device. @{
    const std::string& GetDeviceId() const { return deviceId_; }
    void SetDeviceId(const std::string& deviceId) { deviceId_ = deviceId; }
    /// @}

    /// The requested data type. @{
    const std::string& GetType() const { return type_; }
    void SetType(const std::string& type) { type_ = type; }
    /// @}

    /// Writes the same keys as SaveToJson, but "name" only if it is not empty; a "name" already in
    /// `out` then stays. Returns true.
    bool GetQueryInfo(vxJson::Value& out) const;

    /// Reads "devId", "type", "name" and "param".
    bool LoadFromJson(const vxJson::Value& source) override;
    /// Writes the same four keys, including empty strings and a null parameter.
    bool SaveToJson(vxJson::Value& target) const override;

    /// Orders by device, type, name and parameter; strings compare as unsigned bytes.
    bool operator<(const CDEDeviceDataQueryInfo& other) const;

  private:
    std::string name_;
    vxJson::Value param_;
    std::string deviceId_;
    std::string type_;
};
