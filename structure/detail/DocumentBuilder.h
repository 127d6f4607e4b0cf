#pragma once

#include <VxUtil/vxJson.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "contracts/detail/rapidjson/RawValues.h"
#include "structure/detail/PackedBytes.h"
#include "structure/detail/SelectionWalk.h"

namespace dataengine::detail {

/// The members "type" and "name" of an item, ready to be copied into documents.
class ItemCells {
  public:
    explicit ItemCells(const ItemHead& head);

    /// Fills the cells of the two members. `name` is that of the head.
    void CopyTo(rapidjson::Value* cells, std::string_view name, JsonPool& pool) const {
        RawValues::Copy(cells_.data(), cells_.size(), cells);
        if (!fitsCell_) CopyName(cells, name, pool);
    }

  private:
    static void CopyName(rapidjson::Value* cells, std::string_view name, JsonPool& pool);

    std::array<rapidjson::Value, 4> cells_;
    bool fitsCell_;  // whether the name is stored in its cell
};

/// Builds the document of a selection: decodes each value when its item is reported. A handler of
/// SelectionWalk.
///
/// After an exception the document holds the items before the one that failed.
class DocumentBuilder {
  public:
    static constexpr bool kTablesByName = false;

    /// `bytes` and `size` are those from which the offsets count. `limit` is the number of packed
    /// bytes that may be read, counted for each value that is decoded. All arguments must outlive
    /// the builder.
    DocumentBuilder(const char* bytes, std::size_t size, const vxJson::Value& offsets,
                    rapidjson::Document& document,
                    std::uint64_t limit = std::numeric_limits<std::uint64_t>::max())
        : bytes_(bytes),
          size_(size),
          offsets_(offsets),
          document_(document),
          pool_(document.GetAllocator()),
          left_(limit) {}

    void Items(std::size_t most) {
        document_.SetArray();
        Reserve(document_, most);
    }
    void Found(std::string_view) {}
    void Leaf(const ItemHead& head) { Leaf(head, ItemCells(head)); }
    void BeginTable(const ItemHead& head) { BeginTable(head, ItemCells(head)); }
    void Columns(std::size_t most);
    void Attributes(std::size_t most);
    void Child(const ItemHead& head) { Child(head, ItemCells(head)); }
    void EndChildren() {}
    void HashSort(bool value);
    void HashColumns(const std::string& text);
    void EndTable();

    /// The same for items whose cells were prepared in advance, which takes half the time of a
    /// leaf.
    /// @{
    void Leaf(const ItemHead& head, const ItemCells& item) {
        AddLeaf(head, item, offsets_, document_);
    }
    void BeginTable(const ItemHead& head, const ItemCells& item);
    void Child(const ItemHead& head, const ItemCells& item);
    /// @}

    /// Returns the name of the leaf, or the names of the table and of its child, reported last. The
    /// heads must still exist.
    std::string Path() const;
    /// Returns the offset of the value decoded last.
    int Offset() const { return offset_; }
    /// Returns whether the limit has ended the decoding of that value.
    bool LimitReached() const { return left_ < BytesAt(offset_); }

  protected:
    /// Calls `read` with the packed value of a child of the table being built, and the pool.
    template <typename Read>
    void ReadChild(const ItemHead& head, const Read& read) {
        item_ = &head;
        ReadAt((*tableOffsets_)[head.index].asInt(), read);
    }

  private:
    void Reserve(rapidjson::Value& array, std::size_t most);
    void BeginChildren(int member, std::size_t most);
    void AddLeaf(const ItemHead& head, const ItemCells& item, const vxJson::Value& offsets,
                 rapidjson::Value& list);
    /// Calls `read` with the bytes at `offset` and the pool, and counts the bytes that it takes.
    template <typename Read>
    void ReadAt(int offset, const Read& read) {
        PackedBytes bytes = Begin(offset);
        const std::size_t size = bytes.Remaining();
        read(bytes, pool_);
        left_ -= size - bytes.Remaining();
    }
    PackedBytes Begin(int offset);
    bool Contains(int offset) const {
        return offset >= 0 && static_cast<std::size_t>(offset) <= size_;
    }
    std::size_t BytesAt(int offset) const {
        return Contains(offset) ? size_ - static_cast<std::size_t>(offset) : 0;
    }

    const char* bytes_;
    std::size_t size_;
    const vxJson::Value& offsets_;
    rapidjson::Document& document_;
    JsonPool& pool_;
    std::uint64_t left_;  // packed bytes that may still be read

    // The table being built, if any.
    const ItemHead* table_ = nullptr;
    rapidjson::Value* cells_ = nullptr;     // its members: names and values in turn
    rapidjson::Value* children_ = nullptr;  // its list being built
    const vxJson::Value* tableOffsets_ = nullptr;

    // The leaf or child reported last, and the offset of its value.
    const ItemHead* item_ = nullptr;
    int offset_ = 0;
};

}  // namespace dataengine::detail
