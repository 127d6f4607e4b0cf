#pragma once

#include <string>
#include <vector>

#include "tools/dataengine/Frame.h"

namespace tool {

/// What to decode of a frame: a leaf, or columns and attributes of a table.
struct SelectedItem {
    Item item;
    std::vector<Item> columns;
    std::vector<Item> attributes;
};

/// Returns the items that `select` names, in its order; all items if it is empty. A name is that of
/// an item, or table name, ".", name of a column or an attribute. A single text that is not such a
/// name is the path of a selection in JSON, in the form that the decoder takes.
///
/// Complains about names that the frame does not have.
std::vector<SelectedItem> Select(const Frame& frame, const std::vector<std::string>& select,
                                 Complaints& complaints);

}  // namespace tool
