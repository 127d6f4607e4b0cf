#pragma once

#include <rapidjson/document.h>

#include <cstddef>
#include <string_view>
#include <vector>

#include "contracts/detail/rapidjson/RawValues.h"

namespace dataengine::detail {

/// The wanted name of one variable. The strings belong to the caller.
struct WantedName {
    WantedName(std::string_view variable, std::string_view text, std::size_t position)
        : name(variable), wanted(text), dot(text.find('.')), rank(position) {}

    std::string_view name;    // in a document; of a table column: table, '.', column
    std::string_view wanted;  // the same
    std::size_t dot;          // position of the first dot of `wanted`
    std::size_t rank;         // the greatest counts if several have the same name
};

/// Gives the items of decoded documents their wanted names.
///
/// Names are found by binary search in sorted order, and the columns of a table only among the
/// names that start with the table's. A document's names may be chosen by an adversary: each of
/// their bytes is compared a logarithmic number of times, however they are distributed.
///
/// Thread safety: concurrent calls on distinct documents are safe.
class Renaming {
  public:
    /// Complexity: n log n.
    explicit Renaming(std::vector<WantedName> names);

    /// Renames an item of a document, which owns `pool`, in place.
    void Apply(rapidjson::Value& item, JsonPool& pool) const;

  private:
    using Position = std::vector<WantedName>::const_iterator;
    struct Range {
        Position begin, end;
    };

    void RenameTable(rapidjson::Value* name, rapidjson::Value& columns, JsonPool& pool) const;

    /// Returns the variable in `range` with this name after its first `skipped` bytes, or null.
    static const WantedName* Find(const Range& range, std::string_view name,
                                  std::size_t skipped = 0);
    /// Returns the variables of the columns of a table.
    Range ColumnsOf(std::string_view table) const;

    std::vector<WantedName> names_;  // ascending
};

}  // namespace dataengine::detail
