#include "structure/NameScan.h"

namespace dataengine {

const vxJson::Value* NameScan::Find(const std::string& name) {
    if (!isArray_) return nullptr;

    for (; !remembered_.isEqual(next_); remembered_.increment()) {
        const vxJson::Value& item = ItemAt(remembered_);
        passed_.emplace(item["name"].asString(), &item);
    }
    const auto known = passed_.find(name);
    if (known != passed_.end()) return known->second;

    while (!next_.isEqual(end_)) {
        const vxJson::Value& item = ItemAt(next_);
        const bool found = item["name"].asString() == name;
        next_.increment();
        if (found) return &item;
    }
    return nullptr;
}

}  // namespace dataengine
