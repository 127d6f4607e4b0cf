#pragma once

#include <VxUtil/vxJson.h>
#include <rapidjson/document.h>

#include <map>
#include <string>
#include <vector>

#include "contracts/DataEngineExport.h"
#include "contracts/RapidJsonLayout.h"
#include "variables/DDKey.h"

/// Decodes packed structure data into rapidjson documents.
///
/// A packed buffer opens with a header of three msgpack objects: the format version (1), the name
/// of the unit and its schema, an array of items. The values of the items follow, each a msgpack
/// object at its own byte offset. An item of "type" 11 is a table, whose columns and attributes
/// have values of their own; any other item is a leaf.
///
/// Call GetBinaryDataInfo on the buffer, then ParseBinaryDataToJson with the schema it returned and
/// the offsets that came with the buffer, then PostDataProcessing to rename the variables of the
/// document.
///
/// The bytes need not be trusted: malformed msgpack throws msgpack::insufficient_bytes or
/// msgpack::parse_error. Depth is bounded by memory only. dataengine::PackedFrameReader decodes
/// many frames faster, limits the bytes that it reads, and names item and byte in its exceptions.
///
/// Thread safety: the operations keep no state. Concurrent calls are safe on distinct outputs and
/// may share their inputs.
class DATAENGINE_EXPORT CDEStructureDataHelper {
  public:
    /// Reads the header of a packed buffer.
    ///
    /// - `blob`: the buffer. Bytes after the header are ignored. It may be `name`, or a part of
    ///   `schema`.
    /// - `name`: receives the unit's name byte for byte.
    /// - `schema`: receives the items.
    /// - `offset`: receives the length of the header in bytes, which is where the payload begins.
    ///
    /// Returns false, with all three unchanged, if the version is an integer other than 1. A schema
    /// whose text is not JSON leaves `schema` null; the result is still true.
    ///
    /// Throws msgpack::insufficient_bytes if `blob` ends too early, msgpack::parse_error at a byte
    /// that does not start an object, msgpack::type_error if the version is not a 32-bit integer or
    /// the name is neither `str` nor `bin`. All three are then unchanged, except that an error in
    /// the schema leaves `name` replaced.
    ///
    /// Complexity: linear in the length of the header.
    static bool GetBinaryDataInfo(const std::string& blob, std::string& name, vxJson::Value& schema,
                                  int& offset);

    /// Decodes the selected items of a packed buffer into `out`, which becomes an array with one
    /// object for each selected item that the schema has, in the order of the selection.
    ///
    ///   leaf    {"type", "name", "value"}
    ///   table   {"type", "name", "column", "hashSort", "hashColumns", "attributes"}
    ///
    /// Floats are rounded to two decimals. A value that JSON text cannot express is null as a
    /// whole: one with an extension, a NaN, an infinity, a map key that is not a string or a `bin`
    /// that makes the text invalid. The name of an item may have one leading "$", which is removed.
    ///
    /// - `buf`, `len`: the bytes from which offsets count, and their number.
    /// - `schema`: the items, as GetBinaryDataInfo returns them.
    /// - `offsets`: holds at the "index" of a leaf the byte offset of its value, and at the "index"
    ///   of a table the array of the byte offsets of its columns and attributes, by their "index".
    /// - `fields`: null for all items, or an array of names and of objects {"table": name,
    ///   "column": names, "attributes": names}, where null or absent names mean all.
    /// - `out`: receives the items. Their values are stored in its allocator.
    ///
    /// Returns false, with `out` unchanged, if `schema` or `offsets` is not an array, if `fields`
    /// is neither null nor an array, and if it is null and the schema has no names.
    ///
    /// Throws msgpack::insufficient_bytes for an offset outside the buffer and for a value that is
    /// cut off, msgpack::parse_error for malformed msgpack, and whatever a conversion in `schema`,
    /// `offsets` or `fields` throws. `out` then holds the items before the one that failed.
    ///
    /// Complexity: n log n in the selected items and in the items of the schema up to the last one
    /// selected, and linear in the bytes of each value that is decoded. Values that are not
    /// selected are not read. Memory use is bounded by the sum of the packed sizes of the decoded
    /// values. It can exceed the size of the buffer by the number of items, since each value is
    /// decoded by itself, also if several items of a hostile schema share it.
    static bool ParseBinaryDataToJson(const char* buf, int len, const vxJson::Value& schema,
                                      const vxJson::Value& offsets, const vxJson::Value& fields,
                                      rapidjson::Document& out);

    /// Returns the first element of `list` whose "name" equals `name`, or null if there is none or
    /// `list` is not an array. The pointer is into `list`. Throws what `asString` throws for a
    /// "name" before the match. Complexity: linear in the elements up to the match.
    static const vxJson::Value* GetChildItemByName(const std::string& name,
                                                   const vxJson::Value& list);

    /// Renames the items and table columns of a decoded document in place, and appends each item,
    /// renamed or not, to `items` as compact JSON text.
    ///
    /// - `mapping`: maps wanted names to the parser variables that provide them.
    /// - `parserPath`: the parser. An entry applies if this is the parser path of its variable.
    /// - `document`: an array of items, as ParseBinaryDataToJson produces it.
    /// - `items`: receives one text for each item.
    ///
    /// A leaf is looked up by its name, a column by table name, ".", column name. The wanted name
    /// of a column is split at its first "." into the new names of table and column, and has no
    /// effect without one. Of several wanted names for one variable, the greatest in the order of
    /// `mapping` wins.
    ///
    /// An item that the writer rejects (a NaN or infinity set by the caller) is appended up to that
    /// point. Nothing is appended if the root is not an array. Members of kinds that the decoder
    /// does not produce are treated as absent. Returns true.
    ///
    /// Complexity: linear in the entries of the parser and in the document.
    static bool PostDataProcessing(const std::map<DDKey, DDKey>& mapping,
                                   const std::string& parserPath, rapidjson::Document& document,
                                   std::vector<std::string>& items);
};
