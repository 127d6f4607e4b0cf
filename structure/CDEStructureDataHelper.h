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
/// A packed buffer opens with a header of three msgpack objects: the format version (1), the unit's
/// name and its schema, an array of items. Behind it lie the values of the items, each one msgpack
/// object at a byte offset of its own. An item of "type" 11 is a table, whose columns and
/// attributes are values of their own; any other item is a leaf.
///
/// The calling order is GetBinaryDataInfo on the buffer, ParseBinaryDataToJson with the schema it
/// returned and the offsets that came with the buffer, and, where other names are wanted,
/// PostDataProcessing on the document.
///
/// The bytes may be anything: what is no sound msgpack raises msgpack::insufficient_bytes or
/// msgpack::parse_error, memory is bounded by the bytes that are there, and depth by memory alone.
///
/// Thread rule: the operations keep no state. Calls may run at the same time on distinct outputs
/// and share their inputs.
class DATAENGINE_EXPORT CDEStructureDataHelper {
  public:
    /// Reads the header of a packed buffer.
    ///
    /// `name` takes the unit's name byte for byte, `schema` the items, `offset` the length of the
    /// header in bytes: the payload begins there. What lies behind the header is not looked at.
    ///
    /// Returns false, with all three untouched, if the version is an integer other than 1. A schema
    /// whose text is no JSON leaves a null `schema`, and the result is true all the same.
    ///
    /// Throws msgpack::insufficient_bytes where `blob` ends too early, msgpack::parse_error at a
    /// byte that starts no object, msgpack::type_error if the version is no 32-bit integer or the
    /// name neither `str` nor `bin`. A failure on the version or the name leaves all three
    /// untouched; one on the schema leaves `name` replaced.
    ///
    /// Cost: linear in the length of the header.
    static bool GetBinaryDataInfo(const std::string& blob, std::string& name, vxJson::Value& schema,
                                  int& offset);

    /// Decodes the selected items of a packed buffer into `out`, which becomes an array with one
    /// object for each selected item that the schema knows, in the order of the selection.
    ///
    /// `buf` and `len` are the bytes that the offsets count from, and their number. `offsets`
    /// holds, at the "index" of a leaf, the byte offset of its value, and at the "index" of a table
    /// the list of the byte offsets of its columns and attributes, by their own "index". `fields`
    /// is null for all items, or an array of names and of objects {"table": name, "column": names,
    /// "attributes": names}, the latter two null or absent for all; a name of an item may carry one
    /// leading "$".
    ///
    ///   leaf    {"type", "name", "value"}
    ///   table   {"type", "name", "column", "hashSort", "hashColumns", "attributes"}
    ///
    /// Floats come with two decimals. A value that JSON text could not carry (an extension, a NaN,
    /// a map key that is no string, a `bin` that is no JSON string) is null as a whole. The values
    /// live in the allocator of `out`.
    ///
    /// Returns false, with `out` untouched, if `schema` or `offsets` is no array, or `fields`
    /// neither null nor an array, or null beside a schema without any name.
    ///
    /// Throws msgpack::insufficient_bytes for an offset outside the buffer and for a value cut
    /// short, msgpack::parse_error for bytes that are no msgpack, and what a conversion of an
    /// unsuitable kind in `schema`, `offsets` or `fields` throws. `out` then holds the items
    /// before.
    ///
    /// Cost: linear in the selection, the names passed to find it, and the selected bytes; what is
    /// not selected is never unpacked.
    static bool ParseBinaryDataToJson(const char* buf, int len, const vxJson::Value& schema,
                                      const vxJson::Value& offsets, const vxJson::Value& fields,
                                      rapidjson::Document& out);

    /// The first element of `list` whose "name" equals `name`, or null if there is none or `list`
    /// is no array. The pointer leads into `list`. Throws what `asString` throws on a "name" that
    /// has no text, if the walk comes to it. Cost: linear in the elements passed.
    static const vxJson::Value* GetChildItemByName(const std::string& name,
                                                   const vxJson::Value& list);

    /// Gives the items and table columns of a decoded document the names that a caller wants, in
    /// place, and appends each item, renamed or not, to `items` as one compact JSON text.
    ///
    /// `mapping` leads from the wanted names to the parser variables that serve them; an entry
    /// counts if the parser path of its variable is `parserPath`. A leaf is looked up by its name.
    /// A column is looked up as table name, ".", column name, and its wanted name is split at the
    /// first "." into the new names of table and column; without a "." it has no effect. Of several
    /// wanted names for one variable the greatest in the order of `mapping` wins.
    ///
    /// An item whose text the writer refuses (a NaN or an infinity of the caller's own) is appended
    /// as far as it came. A root that is no array appends nothing. Members of other kinds than the
    /// decoder makes are read as absent. Returns true.
    ///
    /// Cost: linear in the entries of the parser and in the document, one lookup for each name.
    static bool PostDataProcessing(const std::map<DDKey, DDKey>& mapping,
                                   const std::string& parserPath, rapidjson::Document& document,
                                   std::vector<std::string>& items);
};
