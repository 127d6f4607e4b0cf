#pragma once

#include <VxUtil/vxJson.h>

#include <cstddef>
#include <string>
#include <vector>

namespace dataengine {

/// Finds the items of one list by name, as a walk from the front does for each name: the first
/// match wins, and an item whose "name" has no text throws only if the walk would reach it. All
/// lookups together read each item twice at the most. The list must outlive the scan and stay
/// unchanged.
class NameIndex {
  public:
    explicit NameIndex(const vxJson::Value& list)
        : isArray_(list.isArray()),
          remembered_(list.begin()),
          next_(list.begin()),
          end_(list.end()) {}

    /// The first item of that name, or null if there is none or the list is no array. `bearer` may
    /// be an item that is known to have it.
    const vxJson::Value* Find(const std::string& name, const vxJson::Value* bearer = nullptr);

  private:
    /// A remembered item; none where `item` is null.
    struct Entry {
        std::size_t hash;
        const vxJson::Value* item;
    };

    static std::string NameOf(const vxJson::Value& item) { return item["name"].asString(); }
    void RememberPassed();
    void Remember(std::size_t hash, const std::string& name, const vxJson::Value& item);
    void Grow();
    Entry& EntryOf(std::size_t hash, const std::string& name);

    bool isArray_;
    vxJson::ValueConstIterator remembered_;  // what lies before it is in `entries_`
    vxJson::ValueConstIterator next_;        // what lies before it has been compared and passed
    vxJson::ValueConstIterator end_;
    std::vector<Entry> entries_;  // a hash table with open addressing, at most half full
    std::size_t count_ = 0;
};

}  // namespace dataengine
