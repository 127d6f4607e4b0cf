#include "query/CDEDeviceDataQueryInfo.h"

#include <utility>

#include "contracts/detail/JsonValues.h"
#include "contracts/detail/TakeText.h"
#include "schema/DataEngineNames.h"

namespace keys = DataEngineNames::MetaRecord;
using dataengine::detail::NullValue;
using dataengine::detail::TakeText;

CDEDeviceDataQueryInfo::CDEDeviceDataQueryInfo() : param_(NullValue()) {}

CDEDeviceDataQueryInfo::CDEDeviceDataQueryInfo(CDEDeviceDataQueryInfo&& other)
    : CDEDeviceDataQueryInfo() {
    *this = std::move(other);
}

CDEDeviceDataQueryInfo& CDEDeviceDataQueryInfo::operator=(CDEDeviceDataQueryInfo&& other) {
    param_ = other.param_;
    name_ = TakeText(other.name_);
    deviceId_ = TakeText(other.deviceId_);
    type_ = TakeText(other.type_);
    return *this;
}

bool CDEDeviceDataQueryInfo::GetQueryInfo(vxJson::Value& out) const {
    out[keys::devId] = deviceId_;
    out[keys::type] = type_;
    if (!name_.empty()) out[keys::name] = name_;
    out[keys::param] = param_;
    return true;
}

bool CDEDeviceDataQueryInfo::LoadFromJson(const vxJson::Value& source) {
    deviceId_ = source[keys::devId].asString();
    type_ = source[keys::type].asString();
    name_ = source[keys::name].asString();
    param_ = source[keys::param];
    return true;
}

bool CDEDeviceDataQueryInfo::SaveToJson(vxJson::Value& target) const {
    target[keys::devId] = deviceId_;
    target[keys::type] = type_;
    target[keys::name] = name_;
    target[keys::param] = param_;
    return true;
}

bool CDEDeviceDataQueryInfo::operator<(const CDEDeviceDataQueryInfo& other) const {
    int order = deviceId_.compare(other.deviceId_);
    if (order == 0) order = type_.compare(other.type_);
    if (order == 0) order = name_.compare(other.name_);
    return order != 0 ? order < 0 : param_ < other.param_;
}
