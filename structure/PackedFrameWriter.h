#pragma once

#include <VxUtil/vxJson.h>
#include <rapidjson/fwd.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "contracts/DataEngineExport.h"
#include "contracts/RapidJsonSettings.h"

namespace dataengine {

/// Writes packed frames, which PackedFrameReader and CDEStructureDataHelper read: a header with the
/// unit's name and its schema, followed by the values of the items.
///
///     dataengine::PackedFrameWriter writer("inventory/interfaces");
///     writer.AddLeaf("hostname", 1, "edge-r1");
///     dataengine::PackedFrameWriter::Table table = writer.AddTable("ifTable", true, {"ifName"});
///     table.AddColumn("ifName", 1, names);
///     table.AddAttribute("vrf", 1, "default");
///     std::string frame = writer.Frame();
///
/// Values are stored in the order in which they were added. Integers take their narrowest form, a
/// double is always a float64 (5.0 stays a double), binary is stored as `bin` and every other
/// string as `str`. NaN and the infinities, which documents cannot hold, become nil; a time has no
/// packed form. Depth is bounded by memory only.
///
/// Decoded whole, a frame yields every item that was added, in that order, under its name up to the
/// first zero byte. A selection, which finds items by name, reaches those whose name does not start
/// with '$', and of several items of one name the first. After
///
///     writer.AddLeaf("speed", 2, 100);
///     writer.AddLeaf("speed", 2, 200);   // listed in the schema as "speed\0" "1"
///     writer.AddLeaf("$cost", 2, 7);     // listed as "$$cost\0" "2" and as "$cost\0" "2"
///
/// a whole decode yields speed 100, speed 200 and $cost 7. The selection ["speed", "$cost"] yields
/// speed 100 only: readers strip one '$', and nothing is listed as "cost". Programs that decode a
/// part by the names in the schema reach all three, since those are distinct. Columns and
/// attributes of one name are listed like items of one name; readers strip no '$' of theirs.
///
/// A call that throws leaves the writer unchanged. Bad input throws vxJson::Error, whose message
/// names the item. A VxUtil other than the bundled one need not have that class: a library built
/// over it throws std::runtime_error, the base class of vxJson::Error. Every Add operation throws
/// if the payload would exceed 2^31-1 bytes.
///
/// A writer that was moved from may only be assigned to and destroyed.
///
/// Thread safety: not safe for concurrent use; const operations may run concurrently.
class PackedFrameWriter {  // exported by function: Content would be exported with the class
  public:
    class Table;

    /// Starts an empty frame of the unit `name`, which is stored byte for byte.
    DATAENGINE_EXPORT explicit PackedFrameWriter(const std::string& name);
    /// Copies deeply, or takes over the content. A moved-from writer may only be destroyed or
    /// assigned to. @{
    DATAENGINE_EXPORT PackedFrameWriter(const PackedFrameWriter& other);
    DATAENGINE_EXPORT PackedFrameWriter(PackedFrameWriter&& other) noexcept;
    DATAENGINE_EXPORT PackedFrameWriter& operator=(const PackedFrameWriter& other);
    DATAENGINE_EXPORT PackedFrameWriter& operator=(PackedFrameWriter&& other) noexcept;
    DATAENGINE_EXPORT ~PackedFrameWriter();
    /// @}

    /// Adds a leaf. Throws vxJson::Error if `type` is kTableType, and if `value` is a time or
    /// contains one. Complexity: linear in the size of `value`.
    DATAENGINE_EXPORT void AddLeaf(const std::string& name, int type, const vxJson::Value& value);

    /// Adds a table without columns or attributes. `hashSort` and `hashColumns` are stored in the
    /// schema and passed through to decoded documents. Returns the table, to which columns and
    /// attributes can be added until another item is added to the writer.
    DATAENGINE_EXPORT Table AddTable(const std::string& name, bool hashSort,
                                     const std::vector<std::string>& hashColumns);

    /// Adds all items of a document as CDEStructureDataHelper::ParseBinaryDataToJson produces it,
    /// renamed by PostDataProcessing or not. A new frame of these items, decoded whole, is that
    /// document again. Columns may hold values of any kind here, since the decoder passes on
    /// whatever a frame holds.
    ///
    /// Documents from elsewhere may hold what no frame decodes to. They decode with these
    /// differences:
    /// - A double is rounded to two decimals.
    /// - A double of 9e13 or more that is not among the results of the decoder's inexact
    ///   arithmetic, such as 362395754518247.0 and most beyond 1e300, decodes to a neighbour, some
    ///   units in the last place away.
    /// - NaN and the infinities become null.
    /// - "hashColumns" becomes the text that vxJson::Value::toString gives for the value that the
    ///   text denotes, read as Extended JSON: ["a", 1e0] becomes ["a",1.0], and
    ///   {"$oid":"0123456789abcdef01234567"} the string. Within an object that has a key of
    ///   Extended JSON, but not its form, a double of more than six digits becomes
    ///   {"$numberDouble":"..."}.
    ///
    /// Throws vxJson::Error if `document` is not an array, if an item does not consist of exactly
    /// the members that the decoder writes, and if a "hashColumns" is not JSON. Complexity: linear
    /// in the size of `document`, whose numbers count with their decimal digits.
    DATAENGINE_EXPORT void AddItems(const rapidjson::Value& document);

    /// Returns the header followed by the payload. Throws vxJson::Error if the header would exceed
    /// 2^31-1 bytes. Complexity: linear in the size of the frame, n log n in the number of items.
    DATAENGINE_EXPORT std::string Frame() const;

    /// Returns the array of offsets that belongs to the frame: at the index of a leaf the offset of
    /// its value, at the index of a table the array of the offsets of its columns and attributes,
    /// all in bytes from the end of the header. Complexity: linear in the number of items.
    DATAENGINE_EXPORT vxJson::Value Offsets() const;

    /// Returns the number of bytes before the payload. Throws as Frame does. Complexity: linear in
    /// the size of the header, n log n in the number of items.
    DATAENGINE_EXPORT int HeaderLength() const;

  private:
    class Content;

    std::unique_ptr<Content> content_;
};

/// A table of a frame that is being written. It refers to the writer's content: it stays valid when
/// the writer is moved, and must not be used once the writer is destroyed or assigned to.
///
/// Columns and attributes share one sequence of indexes.
class PackedFrameWriter::Table {
  public:
    /// Adds a column. `values` is an array with one element for each row, or null. Throws
    /// vxJson::Error if another item was added after the table, if `values` is of another kind, and
    /// for what AddLeaf rejects. Complexity: linear in the size of `values`.
    DATAENGINE_EXPORT void AddColumn(const std::string& name, int type,
                                     const vxJson::Value& values);

    /// Adds an attribute. Throws vxJson::Error if another item was added after the table, and for
    /// what AddLeaf rejects. Complexity: linear in the size of `value`.
    DATAENGINE_EXPORT void AddAttribute(const std::string& name, int type,
                                        const vxJson::Value& value);

  private:
    friend class PackedFrameWriter;
    Table(Content& content, std::size_t index) : content_(&content), index_(index) {}

    Content* content_;
    std::size_t index_;  // of the item
};

}  // namespace dataengine
