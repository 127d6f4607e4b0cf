#pragma once

#include <VxUtil/vxJson.h>

#include <cstddef>
#include <string>

#include "bson/BsonExport.h"

/// Values as BSON, the form in which a document store and its clients exchange documents.
namespace Bson {

/// The most levels of objects and arrays in a document, its root included. Stores and clients
/// accept no more.
inline constexpr std::size_t kMaxLevels = 100;

/// The most bytes of a document: the 16 MiB of the store, less the `_id` element of 17 bytes that
/// it adds to a document without one.
inline constexpr std::size_t kMaxSize = 16 * 1024 * 1024 - 17;

/// Returns the bytes of `document` as one BSON document.
///
/// Members are written in the order of their keys. Integers are written as int32 if they fit and
/// otherwise as int64, binary values with subtype 0, times as dates, every other kind as itself.
/// Keys may contain "." and begin with "$", as they do in queries.
///
/// BSON strings are UTF-8. The payload of a device data view, "content", is a string of bytes that
/// need not be; write it as binary, which loads in the same way:
///
///     view["content"] = vxJson::Value::Binary(view["content"].asString());
///
/// Throws vxJson::Error if `document` is not an object, nests deeper than kMaxLevels, takes more
/// than kMaxSize bytes, or has a key with a zero byte, a key or string that is not UTF-8 or an
/// integer above 2^63-1. The message names the place, as in "param.list[3].count". Complexity:
/// linear in the size of the document; no recursion. Thread safety: safe on distinct documents.
DATAENGINE_BSON_EXPORT std::string Encode(const vxJson::Value& document);

/// Returns the value of the BSON document in `size` bytes from `bytes` on.
///
/// Whatever Encode writes is read back equal. Of members with equal keys the last one is kept.
/// Types without a kind of their own are read as follows:
///
/// | BSON | value |
/// |---|---|
/// | ObjectId | string of its 24 digits |
/// | binary of any subtype | binary |
/// | symbol, code | string |
/// | code with scope | `{"$code":"...","$scope":{...}}` |
/// | decimal128 | `{"$numberDecimal":"..."}` |
/// | timestamp | `{"$timestamp":{"i":...,"t":...}}` |
/// | regular expression | `{"$regularExpression":{"options":"...","pattern":"..."}}` |
/// | DBPointer | `{"$dbPointer":{"$id":"...","$ref":"..."}}` |
/// | min key, max key | `{"$minKey":1}`, `{"$maxKey":1}` |
/// | undefined | `{"$undefined":true}` |
///
/// Throws vxJson::Error if the bytes are not exactly one valid document of at most kMaxLevels
/// levels; the message names the offset of the invalid element. Lengths in the bytes are checked
/// before anything is allocated for them. Complexity: linear in `size`, with n log n for unsorted
/// keys; no recursion. Thread safety: safe.
DATAENGINE_BSON_EXPORT vxJson::Value Decode(const char* bytes, std::size_t size);

}  // namespace Bson
