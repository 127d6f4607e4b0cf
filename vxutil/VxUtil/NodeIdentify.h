#pragma once

#include <string>

/// The identity of a node without a valid VX128Guid. An empty type means no identity.
///
/// Thread safety: distinct objects may be used concurrently.
struct NodeIdentify {
    std::string nodeType;  ///< The first part of the node's name.
    std::string nodeId;    ///< The second part: the text identifier of the device.
};
