#pragma once

#include <string>

class VX128Guid {
  public:
    bool IsValid() const { return false; }
    std::string ToUUIDString(bool) const { return "00000000-0000-0000-0000-000000000000"; }
};
