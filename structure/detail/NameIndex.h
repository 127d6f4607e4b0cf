#pragma once

#include <VxUtil/vxJson.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace dataengine::detail {

/// Finds the items of one list by name with the results of a plain walk from the front for each
/// name: the first match wins, and an item whose "name" cannot be converted throws only if the walk
/// would reach it. All lookups together read each item once. The list must outlive the index and
/// stay unchanged.
///
/// Invariants:
/// 1. The first `read_` items of the list have been read, the others have not.
/// 2. While lookups remain, `entries_` holds the first item of each name that has been read.
/// 3. `entries_` is a hash table with open addressing and linear probing, at most two thirds full.
class NameIndex {
  public:
    /// `lookups` is the maximum number of calls of Find. The last of them adds nothing to the
    /// table, so that a single lookup costs no more than the walk.
    NameIndex(const vxJson::Value& list, std::size_t lookups)
        : list_(list), size_(list.isArray() ? list.size() : 0), lookups_(lookups) {}

    /// Returns the first item with this name, or null if there is none or the list is not an array.
    /// `hint` may be an item already known to have this name; its name is not read.
    const vxJson::Value* Find(const std::string& name, const vxJson::Value* hint = nullptr);

  private:
    /// A hash table entry. It takes half the memory of a whole hash and a pointer, which makes the
    /// selection of all of 100,000 items 1.1 times as fast.
    struct Entry {
        std::uint32_t hash;
        std::uint32_t place;  // of the item in the list, counted from 1; 0 if the entry is free
    };

    const vxJson::Value& ItemAt(std::uint32_t index) const {
        return list_[static_cast<int>(index)];
    }
    void Add(std::uint32_t hash, const std::string& name);
    void Grow();
    std::size_t PlaceOf(std::uint32_t hash) const { return hash * entries_.size() >> 32; }
    Entry& EntryFor(std::uint32_t hash, const std::string& name);

    const vxJson::Value& list_;
    std::uint32_t size_;
    std::uint32_t read_ = 0;
    std::size_t lookups_;  // remaining
    std::vector<Entry> entries_;
    std::size_t count_ = 0;  // entries in use
};

}  // namespace dataengine::detail
