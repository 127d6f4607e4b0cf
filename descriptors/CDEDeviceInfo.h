#pragma once

#include <string>

#include "contracts/IJsonSerialize.h"

/// A device: its text identifier and its numeric type, "devId" and "devType" in JSON.
///
/// Returned references remain valid for the lifetime of the object.
///
/// Thread safety: not safe for concurrent use.
class DATAENGINE_EXPORT CDEDeviceInfo : public IJsonSerialize {
  public:
    /// Constructs an empty identifier.
    CDEDeviceInfo() = default;

    /// A moved-from object has an empty identifier and keeps its type. Self-assignment has no
    /// effect.
    /// @{
    CDEDeviceInfo(const CDEDeviceInfo&) = default;
    CDEDeviceInfo& operator=(const CDEDeviceInfo&) = default;
    CDEDeviceInfo(CDEDeviceInfo&& other) noexcept;
    CDEDeviceInfo& operator=(CDEDeviceInfo&& other) noexcept;
    /// @}

    /// The device's text identifier, not validated. @{
    const std::string& GetDevId() const { return devId_; }
    void SetDevId(const std::string& devId) { devId_ = devId; }
    /// @}

    /// The device's type number. Initially 0. @{
    int GetDevType() const { return devType_; }
    void SetDevType(int devType) { devType_ = devType; }
    /// @}

    /// Reads "devId" and "devType".
    bool LoadFromJson(const vxJson::Value& source) override;
    /// Writes the same two keys.
    bool SaveToJson(vxJson::Value& target) const override;

  private:
    std::string devId_;
    int devType_ = 0;
};
