#include "structure/detail/NameIndex.h"

#include <algorithm>
#include <functional>

namespace dataengine::detail {
namespace {

std::string NameOf(const vxJson::Value& item) {
    return item["name"].asString();
}

std::uint32_t HashOf(const std::string& name) {
    return static_cast<std::uint32_t>(std::hash<std::string>()(name));
}

}  // namespace

const vxJson::Value* NameIndex::Find(const std::string& name, const vxJson::Value* hint) {
    const bool isLast = --lookups_ == 0;
    const std::uint32_t hash = HashOf(name);
    if (count_ != 0) {
        const std::uint32_t place = EntryFor(hash, name).place;
        if (place != 0) return &ItemAt(place - 1);
    }
    while (read_ != size_) {
        const vxJson::Value& item = ItemAt(read_);
        if (&item == hint) {
            if (!isLast) Add(hash, name);
            ++read_;
            return &item;
        }
        const std::string passed = NameOf(item);
        if (!isLast) Add(HashOf(passed), passed);
        ++read_;
        if (passed == name) return &item;
    }
    return nullptr;
}

/// Adds the item being read unless the table has one with its name.
void NameIndex::Add(std::uint32_t hash, const std::string& name) {
    if (3 * (count_ + 1) > 2 * entries_.size()) Grow();
    Entry& entry = EntryFor(hash, name);
    if (entry.place != 0) return;
    entry = {hash, read_ + 1};
    ++count_;
}

void NameIndex::Grow() {
    // The first table fits one item per remaining lookup: exactly enough if all are selected.
    const std::size_t expected = std::min<std::size_t>(lookups_, size_ - read_) + 8;
    std::vector<Entry> smaller(entries_.empty() ? expected + expected / 2 : 2 * entries_.size());
    smaller.swap(entries_);
    for (const Entry& entry : smaller) {
        if (entry.place == 0) continue;
        std::size_t at = PlaceOf(entry.hash);
        while (entries_[at].place != 0) at = at + 1 == entries_.size() ? 0 : at + 1;
        entries_[at] = entry;
    }
}

/// Returns the entry with this name, or the free entry for it.
NameIndex::Entry& NameIndex::EntryFor(std::uint32_t hash, const std::string& name) {
    std::size_t at = PlaceOf(hash);
    while (entries_[at].place != 0 &&
           (entries_[at].hash != hash || NameOf(ItemAt(entries_[at].place - 1)) != name)) {
        at = at + 1 == entries_.size() ? 0 : at + 1;
    }
    return entries_[at];
}

}  // namespace dataengine::detail
