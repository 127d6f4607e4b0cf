#pragma once

#include <string>

#include <VxUtil/VxUtilExport.h>

/// The domain that a device belongs to: the name of the database that holds its data.
///
/// Thread rule: distinct objects may be used at the same time.
class VXUTIL_EXPORT CVXDomain {
  public:
    /// No domain: an empty name.
    CVXDomain() = default;

    /// The domain whose data is in the database of this name.
    explicit CVXDomain(const std::string& domainDBName);

    /// The name of the database. Valid while the domain lives and isn't assigned to.
    const std::string& GetDomainDBName() const noexcept { return domainDBName_; }

  private:
    std::string domainDBName_;
};
