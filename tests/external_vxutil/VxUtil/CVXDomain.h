#pragma once

#include <string>

class CVXDomain {
  public:
    const std::string& GetDomainDBName() const { return dbName_; }

  private:
    std::string dbName_;
};
