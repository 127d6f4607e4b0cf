#pragma once

#include <string>

#include "contracts/IJsonSerialize.h"

/// A device: its identifier as text and its numeric type, a pair of "devId" and "devType" in JSON.
///
/// The reference that GetDevId returns leads into the object and lives as long as it.
///
/// Thread rule: an object belongs to one thread at a time.
class DATAENGINE_EXPORT CDEDeviceInfo : public IJsonSerialize {
  public:
    /// An empty identifier.
    CDEDeviceInfo() = default;

    /// A move leaves the source's identifier empty and its type as it was. An assignment from
    /// itself changes nothing. @{
    CDEDeviceInfo(const CDEDeviceInfo&) = default;
    CDEDeviceInfo& operator=(const CDEDeviceInfo&) = default;
    CDEDeviceInfo(CDEDeviceInfo&& other) noexcept;
    CDEDeviceInfo& operator=(CDEDeviceInfo&& other) noexcept;
    /// @}

    /// The device's identifier as text, stored unchecked. @{
    const std::string& GetDevId() const { return devId_; }
    void SetDevId(const std::string& devId) { devId_ = devId; }
    /// @}

    /// The device's type number. Set or load it before it is read. @{
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
