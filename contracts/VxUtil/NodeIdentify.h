#pragma once

#include <string>

/// The identity of a node that has no valid VX128Guid. An empty type means that there is none.
struct NodeIdentify {
    std::string nodeType;
    std::string nodeId;
};
