#pragma once

#include <rapidjson/document.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "contracts/RapidJsonLayout.h"

namespace dataengine {

/// The values of one column of a table, in one array. They are those that a decoded document holds
/// at "value": floats have two decimals, and a value that JSON cannot express makes the column null
/// as a whole.
///
/// Thread safety: distinct objects may be used concurrently.
struct PackedColumn {
    /// One byte for each value: 1 for true.
    using Booleans = std::vector<std::uint8_t>;
    /// The bytes of a string are in the frame, or in the pool of the table.
    using Texts = std::vector<std::string_view>;

    std::string name;  ///< as in the schema
    int type = 0;      ///< of the schema, passed through

    /// An array if all values that are not null are of one kind: unsigned integers only if one is
    /// above 2^63-1. A value that is null is 0, false or "". Anything else is the value as it is in
    /// a document: arrays of mixed, nested or only null values, and values that are not arrays.
    std::variant<rapidjson::Value, std::vector<std::int64_t>, std::vector<std::uint64_t>,
                 std::vector<double>, Booleans, Texts>
        values;

    /// One byte for each value of an array of one kind: 1 if it is null. Empty if none is.
    std::vector<std::uint8_t> isNull;
};

/// The columns and attributes of one table of a frame.
///
/// Strings and values refer to the bytes of the frame and to `document`: both must outlive them.
struct PackedTable {
    std::string name;                   ///< as in the schema
    std::vector<PackedColumn> columns;  ///< in the order of the selection
    /// The "attributes" of the table as in a decoded document. Its pool also holds values of
    /// columns.
    rapidjson::Document document;
};

}  // namespace dataengine
