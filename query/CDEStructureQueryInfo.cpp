#include "query/CDEStructureQueryInfo.h"

#include <algorithm>

#include "contracts/detail/JsonValues.h"

using dataengine::detail::NullValue;

CDEStructureQueryInfo::CDEStructureQueryInfo() : params_(NullValue()), rtnFields_(NullValue()) {}

bool CDEStructureQueryInfo::IsDevTypeMatch(int devType) const {
    return std::any_of(devTypes_.begin(), devTypes_.end(),
                       [=](int entry) { return entry == 0 || entry == devType; });
}

bool CDEStructureQueryInfo::LoadFromJson(const vxJson::Value& source) {
    location_ = source["name"].asString();
    params_ = source["param"];
    rtnFields_ = source["rtnFields"];
    const vxJson::Value& devTypes = source["devTypes"];
    if (!devTypes.isArray()) return true;
    vxJson::ValueConstIterator it = devTypes.begin();
    const vxJson::ValueConstIterator end = devTypes.end();
    for (; !it.isEqual(end); it.increment()) {
        devTypes_.push_back(static_cast<int>(it.deref().asInt64()));
    }
    return true;
}

bool CDEStructureQueryInfo::SaveToJson(vxJson::Value& target) const {
    target["name"] = location_;
    target["param"] = params_;
    target["rtnFields"] = rtnFields_;
    vxJson::Value& devTypes = target["devTypes"];
    for (const int devType : devTypes_) devTypes.append(new vxJson::Value(devType));
    return true;
}
