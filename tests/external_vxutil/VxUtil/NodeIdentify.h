#pragma once

#include <string>

class NodeIdentify {
  public:
    std::string nodeType;
    std::string nodeId;
};
