#include "structure/detail/PayloadLayout.h"

#include <limits>
#include <msgpack.hpp>

#include "contracts/detail/JsonValues.h"
#include "structure/detail/ItemList.h"
#include "structure/detail/PackedFault.h"
#include "structure/detail/PackedFormat.h"

namespace dataengine::detail {
namespace {

/// Returns the type and index of an item. Errors begin with `path`.
ItemHead CheckedHead(const ItemList& items, ItemList::Position position, const std::string& path) {
    try {
        const ItemHead head = items.HeadOf(position, path);
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
    /// item has.
    vxJson::Value& At(int index, vxJson::Value& offsets, const std::string& path) const {
        if (static_cast<std::size_t>(index) > frame_.size())
            throw Error(path + ": the index " + std::to_string(index) +
                        " exceeds the number of bytes of the frame");
        while (offsets.size() < static_cast<std::size_t>(index)) offsets.append(NullValue());
        return offsets.append(NullValue());
    }

    /// Appends the offset of the next value, and skips the value.
    void Next(int index, vxJson::Value& offsets, const std::string& path) {
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
};

}  // namespace

PayloadLayout::PayloadLayout(const vxJson::Value& schema) {
    const ItemList items(schema);
    for (ItemList::Position i = 0; i != items.Size(); ++i) {
        const std::string name = NameOf(items[i]);
        const ItemHead head = CheckedHead(items, i, name);
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
        std::string path = table + '.' + NameOf(children[i]);
        const ItemHead head = CheckedHead(children, i, path);
        if (head.type != kTableType) entry.children.try_emplace(head.index, std::move(path));
    }
}

vxJson::Value PayloadLayout::FindOffsets(std::string_view frame, std::size_t payload) const {
    OffsetWriter writer(frame, payload);
    vxJson::Value offsets = EmptyArray();
    for (const auto& [index, entry] : entries_) {
        if (!entry.isTable) {
            writer.Next(index, offsets, entry.path);
            continue;
        }
        vxJson::Value& inner = writer.At(index, offsets, entry.path);
        inner = EmptyArray();
        for (const auto& [child, path] : entry.children) writer.Next(child, inner, path);
    }
    return offsets;
}

}  // namespace dataengine::detail
