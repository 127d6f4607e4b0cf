#pragma once

#include <VxUtil/vxJson.h>
#include <rapidjson/document.h>

#include <cstddef>
#include <string>
#include <vector>

#include "contracts/DataEngineExport.h"
#include "contracts/RapidJsonLayout.h"

namespace dataengine {
namespace detail {
class ValuePacker;
}

/// Writes packed frames, which CDEStructureDataHelper reads: a header with the unit's name and its
/// schema, followed by the values of the items.
///
///     PackedFrameWriter writer("inventory/interfaces");
///     writer.AddLeaf("hostname", 1, "edge-r1");
///     writer.AddTable("ifTable", true, {"ifName"});
///     writer.AddColumn("ifName", 1, names);
///     std::string frame = writer.Frame();
///
/// Values are stored in the order in which they were added. Integers take their narrowest form, a
/// double is always a float64 (5.0 stays a double), binary is stored as `bin` and every other
/// string as `str`. NaN and the infinities, which documents cannot hold, become nil; a time has no
/// packed form. Depth is bounded by memory only.
///
/// Decoded whole, a frame yields every item that was added, in that order, under its name up to the
/// first zero byte. Readers find items by name, and their documents take a name up to its first
/// zero byte. So an item whose name is already taken in its list is listed as that name, a zero
/// byte and its index. An item whose name starts with '$', which readers strip, is listed twice:
/// under such a name, and under that name with one '$' more, which selects it.
///
/// A call that throws leaves the writer unchanged. Bad input throws vxJson::Error, whose message
/// names the item. A VxUtil other than the bundled one need not have that class: a library built
/// over it throws std::runtime_error, the base class of vxJson::Error. Every Add operation throws
/// if the payload would exceed 2^31-1 bytes.
///
/// Thread safety: not safe for concurrent use; const operations may run concurrently.
class PackedFrameWriter {
  public:
    /// Starts an empty frame of the unit `name`, which is stored byte for byte.
    explicit PackedFrameWriter(const std::string& name) : name_(name) {}

    /// Adds a leaf. Throws vxJson::Error if `type` is 11, which marks a table, and if `value` is a
    /// time or contains one. Complexity: linear in the size of `value`.
    DATAENGINE_EXPORT void AddLeaf(const std::string& name, int type, const vxJson::Value& value);

    /// Adds a table without columns or attributes. `hashSort` and `hashColumns` are stored in the
    /// schema and passed through to decoded documents.
    DATAENGINE_EXPORT void AddTable(const std::string& name, bool hashSort,
                                    const std::vector<std::string>& hashColumns);

    /// Adds a column to the table that was added last. `values` is an array with one element for
    /// each row, or null. Throws vxJson::Error if there is no table, if `values` is of another
    /// kind, and for what AddLeaf rejects. Complexity: linear in the size of `values`.
    DATAENGINE_EXPORT void AddColumn(const std::string& name, int type,
                                     const vxJson::Value& values);

    /// Adds an attribute to the table that was added last. It shares one sequence of indexes with
    /// the columns. Throws vxJson::Error if there is no table, and for what AddLeaf rejects.
    /// Complexity: linear in the size of `value`.
    DATAENGINE_EXPORT void AddAttribute(const std::string& name, int type,
                                        const vxJson::Value& value);

    /// Adds all items of a document as CDEStructureDataHelper::ParseBinaryDataToJson produces it,
    /// renamed by PostDataProcessing or not.
    ///
    /// A new frame of these items, decoded whole, is that document again. Columns may hold values
    /// of any kind here, since the decoder passes on whatever a frame holds. Doubles are packed so
    /// that they decode to themselves; one with more than two decimals, which no float decodes to,
    /// is packed exactly. "hashColumns" is stored as the value that its text denotes.
    ///
    /// Throws vxJson::Error if `document` is not an array, and if an item does not consist of
    /// exactly the members that the decoder writes. Complexity: linear in the size of `document`.
    DATAENGINE_EXPORT void AddItems(const rapidjson::Value& document);

    /// Returns the header followed by the payload. Throws vxJson::Error if the header would exceed
    /// 2^31-1 bytes. Complexity: linear in the size of the frame.
    DATAENGINE_EXPORT std::string Frame() const;

    /// Returns the array of offsets that belongs to the frame: at the index of a leaf the offset of
    /// its value, at the index of a table the array of the offsets of its columns and attributes,
    /// all in bytes from the end of the header. Complexity: linear in the number of items.
    DATAENGINE_EXPORT vxJson::Value Offsets() const;

    /// Returns the number of bytes before the payload. Throws as Frame does. Complexity: linear in
    /// the size of the header.
    DATAENGINE_EXPORT int HeaderLength() const;

  private:
    struct Child {
        std::string name;
        int type;
        int offset;
        bool isAttribute;
    };
    struct Item {
        std::string name;
        int type;
        int offset;               // of the value of a leaf
        bool hashSort;            // this and the following: tables only
        std::string hashColumns;  // packed
        std::vector<Child> children;
    };

    template <typename Add>
    void AddOrRestore(const char* part, const std::string& name, const Add& add);
    void AddItem(const std::string& name, int type);
    void AddTableItem(const std::string& name, bool hashSort, const std::string& hashColumns);
    void AddChild(bool isAttribute, const std::string& name, int type);
    template <typename Value>
    void Pack(const Value& value);
    void AddDocumentItem(const rapidjson::Value& item);
    void AddDocumentTable(const rapidjson::Value& table);
    void AddDocumentChildren(bool isAttribute, const rapidjson::Value& children);

    std::string Header() const;
    void PackItems(detail::ValuePacker& packer) const;
    static void PackItem(detail::ValuePacker& packer, const std::string& name, const Item& item,
                         std::size_t index);

    static constexpr std::size_t kNoTable = static_cast<std::size_t>(-1);

    std::string name_;
    std::vector<Item> items_;           // the index of an item is its position
    std::size_t lastTable_ = kNoTable;  // position of the table added last
    bool holdsDocument_ = false;        // whether a document was added, if only an empty one
    std::string payload_;
};

}  // namespace dataengine
