#include "structure/detail/NameIndex.h"

#include <functional>

namespace dataengine {

const vxJson::Value* NameIndex::Find(const std::string& name, const vxJson::Value* bearer) {
    if (!isArray_) return nullptr;
    RememberPassed();
    const std::size_t hash = std::hash<std::string>()(name);
    if (count_ != 0) {
        if (const vxJson::Value* known = EntryOf(hash, name).item) return known;
    }

    while (!next_.isEqual(end_)) {
        const vxJson::Value& item = next_.deref();
        const bool found = &item == bearer || NameOf(item) == name;
        const bool gapless = remembered_.isEqual(next_);
        next_.increment();
        if (!found) continue;
        if (gapless) {  // names asked for in the order of the list are read once
            Remember(hash, name, item);
            remembered_ = next_;
        }
        return &item;
    }
    return nullptr;
}

void NameIndex::RememberPassed() {
    for (; !remembered_.isEqual(next_); remembered_.increment()) {
        const vxJson::Value& item = remembered_.deref();
        const std::string name = NameOf(item);
        Remember(std::hash<std::string>()(name), name, item);
    }
}

void NameIndex::Remember(std::size_t hash, const std::string& name, const vxJson::Value& item) {
    if (2 * (count_ + 1) > entries_.size()) Grow();
    Entry& entry = EntryOf(hash, name);
    if (entry.item != nullptr) return;
    entry = {hash, &item};
    ++count_;
}

void NameIndex::Grow() {
    constexpr std::size_t kFirstSize = 32;
    std::vector<Entry> smaller(entries_.empty() ? kFirstSize : 2 * entries_.size());
    smaller.swap(entries_);
    const std::size_t mask = entries_.size() - 1;
    for (const Entry& entry : smaller) {
        if (entry.item == nullptr) continue;
        std::size_t position = entry.hash & mask;
        while (entries_[position].item != nullptr) position = (position + 1) & mask;
        entries_[position] = entry;
    }
}

/// The entry of that name, or the free one where it belongs.
NameIndex::Entry& NameIndex::EntryOf(std::size_t hash, const std::string& name) {
    const std::size_t mask = entries_.size() - 1;
    std::size_t position = hash & mask;
    while (entries_[position].item != nullptr &&
           (entries_[position].hash != hash || NameOf(*entries_[position].item) != name)) {
        position = (position + 1) & mask;
    }
    return entries_[position];
}

}  // namespace dataengine
