#pragma once

namespace dataengine {

/// The "type" of an item that is a table; every other number marks a leaf.
constexpr int kTableType = 11;

}  // namespace dataengine
