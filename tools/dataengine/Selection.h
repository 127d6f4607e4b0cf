#pragma once

#include <string>
#include <vector>

#include "tools/dataengine/Frame.h"

namespace tool {

/// A selected leaf, or a table with its selected columns and attributes.
struct SelectedItem {
    Item item;
    std::vector<Item> columns;
    std::vector<Item> attributes;
};

/// Returns the items that `select` names, in its order, or all items if it is empty. A name is that
/// of an item, or table name, ".", name of a column or an attribute. A single name that the frame
/// does not have may be the path of a JSON selection in the decoder's form.
///
/// Reports an error for each other name that the frame does not have.
std::vector<SelectedItem> Select(const Frame& frame, const std::vector<std::string>& select,
                                 ErrorReporter& errors);

}  // namespace tool
