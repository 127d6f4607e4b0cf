#pragma once

#include <string>

/// The identity of a node that has no valid VX128Guid. An empty type means that there is none.
///
/// Thread rule: distinct objects may be used at the same time.
struct NodeIdentify {
    std::string nodeType;  ///< The first part of the node's name.
    std::string nodeId;    ///< The second part, which stands for the device.
};
