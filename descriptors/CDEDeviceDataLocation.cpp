#include "descriptors/CDEDeviceDataLocation.h"

#include <utility>

#include "contracts/detail/TakeText.h"

using dataengine::detail::TakeText;

CDEDeviceDataLocation::CDEDeviceDataLocation(const std::string& collectionName,
                                             const std::string& fileName, long long offset,
                                             long long len)
    : collectionName_(collectionName), fileName_(fileName), offset_(offset), len_(len) {}

CDEDeviceDataLocation::CDEDeviceDataLocation(CDEDeviceDataLocation&& other) noexcept {
    *this = std::move(other);
}

CDEDeviceDataLocation& CDEDeviceDataLocation::operator=(CDEDeviceDataLocation&& other) noexcept {
    collectionName_ = TakeText(other.collectionName_);
    fileName_ = TakeText(other.fileName_);
    offset_ = other.offset_;
    len_ = other.len_;
    return *this;
}

bool CDEDeviceDataLocation::LoadFromJson(const vxJson::Value& source) {
    collectionName_ = source["collectionName"].asString();
    fileName_ = source["fileName"].asString();
    offset_ = source["offset"].asInt64();
    len_ = source["len"].asInt64();
    return true;
}

bool CDEDeviceDataLocation::SaveToJson(vxJson::Value& target) const {
    target["collectionName"] = collectionName_;
    target["fileName"] = fileName_;
    target["offset"] = offset_;
    target["len"] = len_;
    return true;
}
