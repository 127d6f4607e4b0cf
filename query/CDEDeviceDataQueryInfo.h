#pragma once

#include <VxUtil/vxJson.h>

#include <string>

#include "contracts/IJsonSerialize.h"

/// Asks for one unit of device data by device, data type, optional name and parameter. No text is
/// checked.
///
/// Setters copy; references that getters return lead into the object and live as long as it.
///
/// Thread rule: an object belongs to one thread at a time.
class DATAENGINE_EXPORT CDEDeviceDataQueryInfo : public IJsonSerialize {
  public:
    /// Empty texts and a null parameter.
    CDEDeviceDataQueryInfo();
    /// A move leaves the source's texts empty and its parameter as it was. An assignment from
    /// itself changes nothing. @{
    CDEDeviceDataQueryInfo(const CDEDeviceDataQueryInfo&) = default;
    CDEDeviceDataQueryInfo& operator=(const CDEDeviceDataQueryInfo&) = default;
    CDEDeviceDataQueryInfo(CDEDeviceDataQueryInfo&& other);
    CDEDeviceDataQueryInfo& operator=(CDEDeviceDataQueryInfo&& other);
    /// @}

    /// The name of the unit asked for; empty for none. @{
    const std::string& GetName() const { return name_; }
    void SetName(const std::string& name) { name_ = name; }
    /// @}

    /// The free-form parameter. @{
    const vxJson::Value& GetParam() const { return param_; }
    void SetParam(const vxJson::Value& param) { param_ = param; }
    /// @}

    /// The device asked for. @{
    const std::string& GetDeviceId() const { return deviceId_; }
    void SetDeviceId(const std::string& deviceId) { deviceId_ = deviceId; }
    /// @}

    /// The data type asked for. @{
    const std::string& GetType() const { return type_; }
    void SetType(const std::string& type) { type_ = type; }
    /// @}

    /// Writes what the query asks for: as SaveToJson, but "name" only where it is not empty, so
    /// that a "name" already in `out` stays. Returns true.
    bool GetQueryInfo(vxJson::Value& out) const;

    /// Reads "devId", "type", "name" and "param".
    bool LoadFromJson(const vxJson::Value& source) override;
    /// Writes the same four keys, an empty text and a null parameter too.
    bool SaveToJson(vxJson::Value& target) const override;

    /// Orders by device, type, name and parameter; texts as unsigned bytes.
    bool operator<(const CDEDeviceDataQueryInfo& other) const;

  private:
    std::string name_;
    vxJson::Value param_;
    std::string deviceId_;
    std::string type_;
};
