#include "descriptors/CDEDeviceInfo.h"

#include <utility>

#include "contracts/detail/TakeText.h"

using dataengine::detail::TakeText;

CDEDeviceInfo::CDEDeviceInfo(CDEDeviceInfo&& other) noexcept {
    *this = std::move(other);
}

CDEDeviceInfo& CDEDeviceInfo::operator=(CDEDeviceInfo&& other) noexcept {
    devId_ = TakeText(other.devId_);
    devType_ = other.devType_;
    return *this;
}

bool CDEDeviceInfo::LoadFromJson(const vxJson::Value& source) {
    devId_ = source["devId"].asString();
    devType_ = source["devType"].asInt();
    return true;
}

bool CDEDeviceInfo::SaveToJson(vxJson::Value& target) const {
    target["devId"] = devId_;
    target["devType"] = devType_;
    return true;
}
