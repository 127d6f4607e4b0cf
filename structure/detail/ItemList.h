#pragma once

#include <VxUtil/vxJson.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dataengine::detail {

/// What all items of a schema, columns and attributes have.
struct ItemHead {
    std::string_view name;
    int type;
    int index;
};

/// The items of a schema, or the columns or attributes of a table. Finds them by name with the
/// results of a plain walk from the front for each name: the first match wins, and an item whose
/// "name" cannot be converted throws only if the walk would reach it. The list must outlive the
/// object and stay unchanged.
///
/// Names may be chosen by an adversary, so they are found by an order, not a hash. All lookups
/// together cost n log n in the items up to the last one needed.
///
/// Invariants:
/// 1. `items_` holds the first items of the list, at most twice as many as the walks needed.
/// 2. `order_` holds the positions of these items, ascending by name, then by position.
/// 3. A key is the eight bytes of a name after `skip_`, the length of the prefix that all names
///    share, as a big-endian number. Keys are in the order of the names that they come from.
class ItemList {
  public:
    /// A position in the list, counted from 0.
    using Position = std::uint32_t;

    explicit ItemList(const vxJson::Value& list)
        : list_(list), size_(list.isArray() ? list.size() : 0) {}

    Position Size() const { return size_; }
    const vxJson::Value& operator[](Position position) const {
        return list_[static_cast<int>(position)];
    }

    /// Returns the position of the first item with this name.
    std::optional<Position> Find(std::string_view name);

    /// Does the same without an order, for a list with a single lookup. Complexity: linear in the
    /// items up to the match.
    std::optional<Position> FindOnce(std::string_view name) const;

    /// Prepares the functions below. Reads each item once: 100,000 of them do not fit in a cache.
    void ReadAll();

    /// Returns the name of an item, or nothing if it is not a string. The name is valid until the
    /// next call of OwnName, or of Find after an exception.
    std::optional<std::string_view> OwnName(Position position);

    /// Finds the first item with the name that OwnName returned for `position`. Complexity:
    /// constant.
    std::optional<Position> FindOwn(Position position, std::string_view name) {
        if (position < Read()) return items_[position].first;
        return Find(name);
    }

    /// Returns the type and index of an item that was found under `name`. Throws what asInt throws.
    ItemHead HeadOf(Position position, std::string_view name) const;

  private:
    struct Item {
        std::size_t end;  // of the name in `text_`
        Position first;   // the first item with this name
        bool isString;    // the name
        bool hasHead;     // whether type and index have been converted
        int type;
        int index;
    };
    struct Entry {
        std::uint64_t key;
        Position position;
    };
    using Iterator = std::vector<Entry>::iterator;

    Position Read() const { return static_cast<Position>(items_.size()); }
    std::string_view NameAt(Position position) const {
        const std::size_t begin = position == 0 ? 0 : items_[position - 1].end;
        return std::string_view(text_).substr(begin, items_[position].end - begin);
    }

    void ReadNext();
    bool ReadHead();
    void ReadUpTo(Position end);
    void Sort();
    void SortByKey();
    void SortGroup(Iterator begin, Iterator end);
    std::optional<Position> FindRead(std::string_view name) const;

    const vxJson::Value& list_;
    Position size_;
    std::string text_;  // the names, concatenated
    std::vector<Item> items_;
    std::size_t skip_ = 0;
    std::vector<Entry> order_;
    std::string unread_;  // the name of an item that could not be read in advance
};

}  // namespace dataengine::detail
