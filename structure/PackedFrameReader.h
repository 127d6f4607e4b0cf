#pragma once

#include <VxUtil/vxJson.h>
#include <rapidjson/document.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "contracts/DataEngineExport.h"
#include "contracts/RapidJsonLayout.h"
#include "structure/PackedTable.h"

namespace dataengine {

/// Decodes packed frames, one after the other, with one selection. It gives the results of
/// CDEStructureDataHelper::GetBinaryDataInfo and ParseBinaryDataToJson, but remembers the last
/// header and what the selection comes to in its schema: a further frame with the same header costs
/// a comparison, its offsets and its values.
///
///     dataengine::PackedFrameReader reader;
///     for (const Stored& unit : units) {
///         rapidjson::Document document;
///         if (reader.Open(unit.frame) && reader.Decode(unit.offsets, document)) Use(document);
///     }
///
/// The bytes need not be trusted. Malformed msgpack throws msgpack::insufficient_bytes or
/// msgpack::parse_error, whose text names the item and the byte, counted from the start of the
/// frame: "ifTable.ifName: byte 1234: the string ends beyond the frame". Unsuitable JSON in schema,
/// selection or offsets throws vxJson::Error. A platform's own VxUtil need not have that class: a
/// library built over it throws std::runtime_error, the base class of vxJson::Error.
///
/// A header of up to 1 MiB is remembered. Depth is bounded by memory only.
///
/// Thread safety: not safe for concurrent use; one reader per thread, kept for all frames.
class DATAENGINE_EXPORT PackedFrameReader {
  public:
    /// Creates a reader that decodes all items.
    PackedFrameReader();

    /// Creates a reader that decodes the items of `selection`, which is copied. It has the form of
    /// the `fields` of CDEStructureDataHelper::ParseBinaryDataToJson; a plain name may also be that
    /// of a table, which is then decoded as a whole.
    explicit PackedFrameReader(const vxJson::Value& selection);

    /// A moved-from reader may only be destroyed or assigned to. @{
    PackedFrameReader(PackedFrameReader&& other) noexcept;
    PackedFrameReader& operator=(PackedFrameReader&& other) noexcept;
    ~PackedFrameReader();
    /// @}

    /// Reads the header of a frame, or recognizes the last one. The bytes of `frame` must stay
    /// until the last call of Decode, DecodeTable or FindOffsets for it.
    ///
    /// Returns false if the version is an integer other than 1. After that, and after an exception,
    /// no frame is open.
    ///
    /// Throws msgpack::insufficient_bytes, msgpack::parse_error or msgpack::type_error as
    /// GetBinaryDataInfo does, and vxJson::Error if the header exceeds 2^31-1 bytes.
    ///
    /// Complexity: linear in the length of the header.
    bool Open(std::string_view frame);

    /// The header of the open frame: the unit's name byte for byte, the schema, and the length of
    /// the header in bytes. Without an open frame they are empty, null and 0. References remain
    /// valid until the next Open. @{
    const std::string& Name() const;
    const vxJson::Value& Schema() const;
    int HeaderLength() const;
    /// @}

    /// Returns the bytes after the header, from which offsets count.
    std::string_view Payload() const;

    /// Decodes the selected items of the open frame into `document`, as ParseBinaryDataToJson does.
    /// The document refers neither to the reader nor to the frame.
    ///
    /// Returns false, with `document` unchanged, if `offsets` or the schema is not an array, if the
    /// selection is neither null nor an array, and if it is null and the schema has no names.
    ///
    /// Throws what ParseBinaryDataToJson throws, and vxJson::Error if no frame is open or the limit
    /// is reached. `document` then holds the items before the one that failed.
    ///
    /// Complexity: linear in the selected items and in their packed bytes. Memory use is bounded by
    /// the limit.
    bool Decode(const vxJson::Value& offsets, rapidjson::Document& document);

    /// Does the same for a frame whose values are consecutive, as dataengine::PackedFrameWriter
    /// writes them. Throws what FindOffsets throws. Complexity: linear in the frame.
    bool Decode(rapidjson::Document& document);

    /// Decodes one table into arrays instead of a document: its selected columns, each in one
    /// vector, and its attributes. `name` is the one in the schema; of several, the first counts.
    /// The values are those of the document, without the cost of building it.
    ///
    ///     dataengine::PackedTable table;
    ///     if (reader.DecodeTable("ifTable", table))
    ///         Plot(std::get<std::vector<std::int64_t>>(table.columns[0].values));
    ///
    /// The strings of the columns refer to the bytes of the frame, and to `table`. Columns that are
    /// tables themselves have no values and are left out. Without offsets, the values are taken to
    /// be consecutive.
    ///
    /// Returns false, with `table` unchanged, if no table of this name is selected, or if `offsets`
    /// is not an array. Throws as Decode does, but not for values of other items; `table` then
    /// holds the columns before the one that failed. Complexity: linear in the values of the table,
    /// and without offsets in the frame. @{
    bool DecodeTable(const std::string& name, const vxJson::Value& offsets, PackedTable& table);
    bool DecodeTable(const std::string& name, PackedTable& table);
    /// @}

    /// Returns the offsets of the values of a frame whose values are consecutive: in the order of
    /// the indexes of the items, and within a table in the order of the indexes of its columns and
    /// attributes. Items of one index share a value. Bytes after the last value are ignored.
    ///
    /// Throws as Decode does if the payload ends too early or is malformed, and vxJson::Error if no
    /// frame is open, if an index is negative or exceeds the number of bytes of the frame, if a
    /// leaf and a table have the same index, and if an offset exceeds 2^31-1.
    ///
    /// Complexity: linear in the payload and in the greatest index.
    vxJson::Value FindOffsets() const;

    /// Sets the number of packed bytes that one call of Decode may read, counted for each value
    /// that is decoded. By default it is four times the size of the payload: the values of a
    /// written frame have that size together, but the items of a hostile schema may share a value.
    void SetLimit(std::size_t bytes);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace dataengine
