#pragma once

#include <string>

#include "contracts/IJsonSerialize.h"

/// A device: its identifier as text and its numeric type, a pair of "devId" and "devType" in JSON.
///
/// A move leaves the source's identifier empty and its type as it was.
///
/// Thread rule: an object belongs to one thread at a time.
class DATAENGINE_EXPORT CDEDeviceInfo : public IJsonSerialize {
  public:
    CDEDeviceInfo() = default;
    CDEDeviceInfo(const CDEDeviceInfo&) = default;
    CDEDeviceInfo& operator=(const CDEDeviceInfo&) = default;
    // Written out for the source's empty text.
    CDEDeviceInfo(CDEDeviceInfo&& other) noexcept;
    CDEDeviceInfo& operator=(CDEDeviceInfo&& other) noexcept;

    const std::string& GetDevId() const { return devId_; }
    void SetDevId(const std::string& devId) { devId_ = devId; }

    int GetDevType() const { return devType_; }
    void SetDevType(int devType) { devType_ = devType; }

    bool LoadFromJson(const vxJson::Value& source) override;
    bool SaveToJson(vxJson::Value& target) const override;

  private:
    std::string devId_;
    int devType_ = 0;
};
