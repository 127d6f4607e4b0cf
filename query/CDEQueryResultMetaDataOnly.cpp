#include "query/CDEQueryResultMetaDataOnly.h"

#include <utility>

#include "contracts/detail/JsonValues.h"
#include "contracts/detail/TakeText.h"
#include "schema/DataEngineNames.h"

namespace keys = DataEngineNames::MetaRecord;
using dataengine::detail::NullValue;
using dataengine::detail::TakeText;

namespace {

void AppendLine(std::string& text, const std::string& label, const std::string& content) {
    text.append(label).append("=").append(content).append("\r\n");
}

}  // namespace

CDEQueryResultMetaDataOnly::CDEQueryResultMetaDataOnly() : param_(NullValue()) {}

CDEQueryResultMetaDataOnly::CDEQueryResultMetaDataOnly(CDEQueryResultMetaDataOnly&& other)
    : CDEQueryResultMetaDataOnly() {
    *this = std::move(other);
}

CDEQueryResultMetaDataOnly& CDEQueryResultMetaDataOnly::operator=(
    CDEQueryResultMetaDataOnly&& other) {
    param_ = other.param_;
    day_ = other.day_;
    name_ = TakeText(other.name_);
    deviceId_ = TakeText(other.deviceId_);
    type_ = TakeText(other.type_);
    return *this;
}

bool CDEQueryResultMetaDataOnly::GetQueryInfo(vxJson::Value& out) const {
    out[keys::day] = day_;
    out[keys::devId] = deviceId_;
    out[keys::type] = type_;
    if (!name_.empty()) out[keys::name] = name_;
    out[keys::param] = param_;
    return true;
}

std::string CDEQueryResultMetaDataOnly::toPrintString() const {
    std::string text;
    text.reserve(300);
    AppendLine(text, keys::day, std::to_string(day_));
    AppendLine(text, keys::devId, deviceId_);
    AppendLine(text, keys::type, type_);
    AppendLine(text, keys::name, name_);
    AppendLine(text, keys::param, param_.toStyledString());
    return text;
}

bool CDEQueryResultMetaDataOnly::LoadFromJson(const vxJson::Value& source) {
    day_ = source[keys::day].asInt();
    deviceId_ = source[keys::devId].asString();
    type_ = source[keys::type].asString();
    name_ = source[keys::name].asString();
    param_ = source[keys::param];
    return true;
}

bool CDEQueryResultMetaDataOnly::SaveToJson(vxJson::Value& target) const {
    target[keys::day] = day_;
    target[keys::devId] = deviceId_;
    target[keys::type] = type_;
    target[keys::name] = name_;
    target[keys::param] = param_;
    return true;
}

bool CDEQueryResultMetaDataOnly::operator<(const CDEQueryResultMetaDataOnly& other) const {
    if (day_ < other.day_) return true;
    int order = deviceId_.compare(other.deviceId_);
    if (order == 0) order = type_.compare(other.type_);
    if (order == 0) order = name_.compare(other.name_);
    return order != 0 ? order < 0 : param_ < other.param_;
}
