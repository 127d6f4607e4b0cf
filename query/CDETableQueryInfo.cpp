#include "query/CDETableQueryInfo.h"

#include <utility>

#include "contracts/detail/JsonValues.h"
#include "contracts/detail/TakeText.h"

using dataengine::detail::NullValue;
using dataengine::detail::TakeText;

CDETableQueryInfo::CDETableQueryInfo() : params_(NullValue()) {}

CDETableQueryInfo::CDETableQueryInfo(CDETableQueryInfo&& other) : CDETableQueryInfo() {
    *this = std::move(other);
}

CDETableQueryInfo& CDETableQueryInfo::operator=(CDETableQueryInfo&& other) {
    params_ = other.params_;
    tableName_ = TakeText(other.tableName_);
    return *this;
}

bool CDETableQueryInfo::LoadFromJson(const vxJson::Value& source) {
    tableName_ = source["name"].asString();
    params_ = source["param"];
    return true;
}

bool CDETableQueryInfo::SaveToJson(vxJson::Value& target) const {
    target["name"] = tableName_;
    target["param"] = params_;
    return true;
}
