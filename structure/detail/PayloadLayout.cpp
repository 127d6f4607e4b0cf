#include "structure/detail/PayloadLayout.h"

#include <limits>

#include "contracts/detail/JsonValues.h"
#include "structure/detail/ItemList.h"
#include "structure/detail/MsgpackErrors.h"
#include "structure/detail/PackedFault.h"
#include "structure/detail/PackedFormat.h"

namespace dataengine::detail {
namespace {

/// The path of an item for errors. It is joined for an error only: a long name of a table would
/// otherwise be copied for each of its children.
struct ItemPath {
    const std::string* table;  // of a child, otherwise null
    const std::string& name;

    std::string operator+(const std::string& error) const {
        return (table == nullptr ? "" : *table + '.') + name + error;
    }
};

/// Returns the type and index of an item. Errors begin with `path`.
ItemHead CheckedHead(const ItemList& items, ItemList::Position position, const ItemPath& path) {
    try {
        const ItemHead head = items.HeadOf(position, path.name);
        if (head.index >= 0) return head;
        throw Error("the index " + std::to_string(head.index) + " is negative");
    } catch (const Error& error) {
        throw Error(path + ": " + error.what());
    }
}

std::string NameOf(const vxJson::Value& item) {
    const vxJson::Value& name = item["name"];
    return name.isString() ? name.asString() : "unnamed item";
}

/// Appends offsets to an array, each at its index.
class OffsetWriter {
  public:
    OffsetWriter(std::string_view frame, std::size_t payload)
        : frame_(frame),
          payload_(payload),
          bytes_(frame.data() + payload, frame.size() - payload) {}

    /// Appends the value `offsets` itself for the element at `index`, after nulls for those that no
    /// item has. All arrays together have at most as many nulls as the frame has bytes.
    vxJson::Value& At(int index, vxJson::Value& offsets, const ItemPath& path) {
        nulls_ += static_cast<std::size_t>(index) - offsets.size();
        if (nulls_ > frame_.size())
            throw Error(path + ": the index " + std::to_string(index) +
                        " exceeds the number of bytes of the frame");
        while (offsets.size() < static_cast<std::size_t>(index)) offsets.append(NullValue());
        return offsets.append(NullValue());
    }

    /// Appends the offset of the next value, and skips the value.
    void Next(int index, vxJson::Value& offsets, const ItemPath& path) {
        const std::size_t offset = frame_.size() - payload_ - bytes_.Remaining();
        if (offset > std::size_t{std::numeric_limits<int>::max()})
            throw Error(path + ": the offset " + std::to_string(offset) + " exceeds 2147483647");
        At(index, offsets, path) = static_cast<int>(offset);
        try {
            bytes_.Skip();
        } catch (const msgpack::insufficient_bytes&) {
            throw msgpack::insufficient_bytes(path + ": " + Fault(offset));
        } catch (const msgpack::parse_error&) {
            throw msgpack::parse_error(path + ": " + Fault(offset));
        }
    }

  private:
    std::string Fault(std::size_t offset) const { return DescribeFault(frame_, payload_ + offset); }

    std::string_view frame_;
    std::size_t payload_;
    PackedBytes bytes_;
    std::size_t nulls_ = 0;
};

}  // namespace

PayloadLayout::PayloadLayout(const vxJson::Value& schema) {
    const ItemList items(schema);
    for (ItemList::Position i = 0; i != items.Size(); ++i) {
        const std::string name = NameOf(items[i]);
        const ItemHead head = CheckedHead(items, i, {nullptr, name});
        const bool isTable = head.type == kTableType;
        Entry& entry = entries_.try_emplace(head.index, Entry{name, isTable, {}}).first->second;
        if (entry.isTable != isTable)
            throw Error(name + ": a leaf and a table have the index " + std::to_string(head.index));
        if (!isTable) continue;
        AddChildren(name, items[i]["column"], entry);
        AddChildren(name, items[i]["attributes"], entry);
    }
}

void PayloadLayout::AddChildren(const std::string& table, const vxJson::Value& list, Entry& entry) {
    const ItemList children(list);
    for (ItemList::Position i = 0; i != children.Size(); ++i) {
        std::string name = NameOf(children[i]);
        const ItemHead head = CheckedHead(children, i, {&table, name});
        if (head.type != kTableType) entry.children.try_emplace(head.index, std::move(name));
    }
}

vxJson::Value PayloadLayout::FindOffsets(std::string_view frame, std::size_t payload) const {
    OffsetWriter writer(frame, payload);
    vxJson::Value offsets = EmptyArray();
    for (const auto& [index, entry] : entries_) {
        if (!entry.isTable) {
            writer.Next(index, offsets, {nullptr, entry.name});
            continue;
        }
        vxJson::Value& inner = writer.At(index, offsets, {nullptr, entry.name});
        inner = EmptyArray();
        for (const auto& [child, name] : entry.children)
            writer.Next(child, inner, {&entry.name, name});
    }
    return offsets;
}

}  // namespace dataengine::detail
