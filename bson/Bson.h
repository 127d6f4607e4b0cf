#pragma once

#include <VxUtil/vxJson.h>

#include <cstddef>
#include <string>

#include "bson/BsonExport.h"

/// Conversion between values and BSON, in which a document store and its clients exchange
/// documents.
namespace dataengine::bson {

/// The maximum nesting of objects and arrays in a document, including its root. Stores and clients
/// accept no more.
inline constexpr std::size_t kMaxLevels = 100;

/// The maximum size of a document in bytes: the 16 MiB of the store minus the `_id` element of 17
/// bytes that it adds to a document without one.
inline constexpr std::size_t kMaxSize = 16 * 1024 * 1024 - 17;

/// Encodes `document` as one BSON document.
///
/// Members are written in the order of their keys. Integers are written as int32 if they fit and
/// otherwise as int64, binary values with subtype 0, times as dates, and every other kind as its
/// BSON counterpart. Keys may contain "." and may begin with "$", as in queries.
///
/// BSON strings are UTF-8, but the "content" of a device data view may contain any bytes. Encode it
/// as binary, which loads in the same way:
///
///     view["content"] = vxJson::Value::Binary(view["content"].asString());
///
/// Returns the bytes of the BSON document.
///
/// Throws vxJson::Error if `document` is not an object, nests deeper than kMaxLevels levels,
/// exceeds kMaxSize bytes, or has a key with a zero byte, a key or string that is not UTF-8 or an
/// integer above 2^63-1. The message names the path, as in "param.list[3].count".
///
/// Complexity: linear in the size of the document; no recursion.
/// Thread safety: may be called concurrently, also on one document that no thread modifies.
DATAENGINE_BSON_EXPORT std::string Encode(const vxJson::Value& document);

/// Decodes the BSON document in the `size` bytes at `bytes`.
///
/// A document that Encode returned is decoded to an equal value. Of members with equal keys the
/// last one is kept. BSON types without a corresponding kind are decoded as follows:
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
/// Declared lengths are checked against the remaining bytes before anything is allocated.
///
/// Returns the value of the document.
///
/// Throws vxJson::Error if the bytes are not exactly one valid document, or nest deeper than
/// kMaxLevels levels. The message names the first byte of the invalid element.
///
/// Complexity: linear in `size`, with n log n for unsorted keys; no recursion.
/// Thread safety: may be called concurrently.
DATAENGINE_BSON_EXPORT vxJson::Value Decode(const char* bytes, std::size_t size);

}  // namespace dataengine::bson
