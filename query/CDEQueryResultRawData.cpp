#include "query/CDEQueryResultRawData.h"

#include <utility>

#include "contracts/detail/JsonValues.h"
#include "contracts/detail/TakeText.h"

using dataengine::detail::BinaryValue;
using dataengine::detail::TakeText;
using dataengine::detail::TimeValue;

CDEQueryResultRawData::CDEQueryResultRawData(CDEQueryResultRawData&& other) noexcept {
    *this = std::move(other);
}

CDEQueryResultRawData& CDEQueryResultRawData::operator=(CDEQueryResultRawData&& other) noexcept {
    time_ = other.time_;
    data_ = TakeText(other.data_);
    flag_ = other.flag_;
    md5_ = TakeText(other.md5_);
    taskId_ = TakeText(other.taskId_);
    taskIndex_ = other.taskIndex_;
    extraId_ = TakeText(other.extraId_);
    dataSource_ = other.dataSource_;
    errorLog_ = TakeText(other.errorLog_);
    return *this;
}

bool CDEQueryResultRawData::LoadFromJson(const vxJson::Value& source) {
    time_ = source["time"].asTime();
    data_ = source["data"].asBinary();
    flag_ = source["flag"].asInt();
    md5_ = source["md5"].asString();
    taskId_ = source["taskId"].asString();
    taskIndex_ = source["taskIndex"].asInt();
    extraId_ = source["extraId"].asString();
    dataSource_ = source["dataSource"].asInt();
    errorLog_ = source["errorLog"].asString();
    return true;
}

bool CDEQueryResultRawData::SaveToJson(vxJson::Value& target) const {
    target["time"] = TimeValue(time_);
    target["data"] = BinaryValue(data_);
    target["flag"] = flag_;
    target["md5"] = md5_;
    target["taskId"] = taskId_;
    target["taskIndex"] = taskIndex_;
    target["extraId"] = extraId_;
    target["dataSource"] = dataSource_;
    target["errorLog"] = errorLog_;
    return true;
}
