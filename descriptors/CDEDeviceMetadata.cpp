#include "descriptors/CDEDeviceMetadata.h"

#include "contracts/detail/JsonValues.h"

using dataengine::detail::NullValue;

CDEDeviceMetadata::CDEDeviceMetadata() : param_(NullValue()), properties_(NullValue()) {}

bool CDEDeviceMetadata::LoadFromJson(const vxJson::Value& source) {
    devId_ = source["devId"].asString();
    name_ = source["name"].asString();
    type_ = source["type"].asString();
    sourceType_ = source["sourceType"].asString();
    param_ = source["param"];
    properties_ = source["props"];
    md5_ = source["md5"].asString();
    time_ = source["time"].asTime();
    dataLocation_.LoadFromJson(source["dataLocation"]);
    data_ = source["data"].asString();
    return true;
}

bool CDEDeviceMetadata::SaveToJson(vxJson::Value& target) const {
    target["devId"] = devId_;
    target["name"] = name_;
    target["type"] = type_;
    target["sourceType"] = sourceType_;
    target["param"] = param_;
    target["props"] = properties_;
    target["md5"] = md5_;
    target["time"] = time_;
    dataLocation_.SaveToJson(target["dataLocation"]);
    return true;
}
