#pragma once

#include <VxUtil/vxJson.h>

#include <string>
#include <unordered_map>

namespace dataengine {

/// Finds the items of one list by name, as a walk from the front does for each name: the first
/// match wins, and an item whose "name" has no text throws only if the walk would reach it. All
/// lookups together read each item twice at the most. The list must outlive the scan and stay
/// unchanged.
class NameScan {
  public:
    explicit NameScan(const vxJson::Value& list)
        : isArray_(list.isArray()),
          remembered_(list.begin()),
          next_(list.begin()),
          end_(list.end()) {}

    /// The first item of that name, or null if there is none or the list is no array.
    const vxJson::Value* Find(const std::string& name);

  private:
    static const vxJson::Value& ItemAt(const vxJson::ValueConstIterator& position) {
        return position.deref();
    }

    bool isArray_;
    std::unordered_map<std::string, const vxJson::Value*> passed_;  // up to `remembered_`
    vxJson::ValueConstIterator remembered_;
    vxJson::ValueConstIterator next_;  // what lies before it has been compared and passed
    vxJson::ValueConstIterator end_;
};

}  // namespace dataengine
