#pragma once

#include <VxUtil/vxJson.h>

#include <cstddef>
#include <string>
#include <vector>

namespace dataengine {

/// Finds the items of one list by name with the results of a plain walk from the front for each
/// name: the first match wins, and an item whose "name" cannot be converted throws only if the walk
/// would reach it. All lookups together read each item once. The list must outlive the index and
/// stay unchanged.
///
/// Invariants:
/// 1. The items before `next_` have been read, the others have not.
/// 2. While lookups are to come, `entries_` holds the first item of each name that has been read.
/// 3. `entries_` is a hash table with open addressing and linear probing; its size is 0 or a power
///    of two, and at most half of its entries are in use.
class NameIndex {
  public:
    /// `lookups` is the greatest number of calls of Find to come. The last of them adds nothing to
    /// the table, so that a single lookup costs no more than the walk.
    NameIndex(const vxJson::Value& list, std::size_t lookups);

    /// Returns the first item with this name, or null if there is none or the list is not an array.
    /// `hint` may be an item already known to have this name; its name is not read.
    const vxJson::Value* Find(const std::string& name, const vxJson::Value* hint = nullptr);

  private:
    /// A hash table entry, free if `item` is null.
    struct Entry {
        std::size_t hash;
        const vxJson::Value* item;
    };

    void Add(std::size_t hash, const std::string& name, const vxJson::Value& item);
    void Grow();
    Entry& EntryFor(std::size_t hash, const std::string& name);

    vxJson::ValueConstIterator next_;
    vxJson::ValueConstIterator end_;
    std::size_t lookups_;  // still to come
    std::size_t firstSize_;
    std::vector<Entry> entries_;
    std::size_t count_ = 0;  // entries in use
};

}  // namespace dataengine
