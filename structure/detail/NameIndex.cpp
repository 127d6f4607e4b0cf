#include "structure/detail/NameIndex.h"

#include <algorithm>
#include <functional>

namespace dataengine {
namespace {

std::string NameOf(const vxJson::Value& item) {
    return item["name"].asString();
}

std::size_t HashOf(const std::string& name) {
    return std::hash<std::string>()(name);
}

/// Returns the size of a table that is at most half full with `count` entries.
std::size_t TableSize(std::size_t count) {
    std::size_t size = 16;
    while (size < 2 * count) size *= 2;
    return size;
}

}  // namespace

NameIndex::NameIndex(const vxJson::Value& list, std::size_t lookups)
    : next_(list.isArray() ? list.begin() : list.end()),
      end_(list.end()),
      lookups_(lookups),
      firstSize_(TableSize(std::min<std::size_t>(lookups, list.size()))) {}

const vxJson::Value* NameIndex::Find(const std::string& name, const vxJson::Value* hint) {
    const bool isLast = --lookups_ == 0;
    const std::size_t hash = HashOf(name);
    if (count_ != 0) {
        if (const vxJson::Value* known = EntryFor(hash, name).item) return known;
    }
    while (!next_.isEqual(end_)) {
        const vxJson::Value& item = next_.deref();
        if (&item == hint) {
            if (!isLast) Add(hash, name, item);
            next_.increment();
            return &item;
        }
        const std::string passed = NameOf(item);
        if (!isLast) Add(HashOf(passed), passed, item);
        next_.increment();
        if (passed == name) return &item;
    }
    return nullptr;
}

/// Adds an item unless one of its name is there.
void NameIndex::Add(std::size_t hash, const std::string& name, const vxJson::Value& item) {
    if (2 * (count_ + 1) > entries_.size()) Grow();
    Entry& entry = EntryFor(hash, name);
    if (entry.item != nullptr) return;
    entry = {hash, &item};
    ++count_;
}

void NameIndex::Grow() {
    std::vector<Entry> smaller(entries_.empty() ? firstSize_ : 2 * entries_.size());
    smaller.swap(entries_);
    const std::size_t mask = entries_.size() - 1;
    for (const Entry& entry : smaller) {
        if (entry.item == nullptr) continue;
        std::size_t position = entry.hash & mask;
        while (entries_[position].item != nullptr) position = (position + 1) & mask;
        entries_[position] = entry;
    }
}

/// Returns the entry of that name, or the free one where it belongs.
NameIndex::Entry& NameIndex::EntryFor(std::size_t hash, const std::string& name) {
    const std::size_t mask = entries_.size() - 1;
    std::size_t position = hash & mask;
    while (entries_[position].item != nullptr &&
           (entries_[position].hash != hash || NameOf(*entries_[position].item) != name)) {
        position = (position + 1) & mask;
    }
    return entries_[position];
}

}  // namespace dataengine
