#pragma once

#include <VxUtil/vxJson.h>

namespace dataengine {

/// The "type" of an item that is a table; every other number marks a leaf.
constexpr int kTableType = 11;

/// The kind of the null value.
constexpr auto kNullType = static_cast<vxJson::ValueType>(0);

}  // namespace dataengine
