#pragma once

#include <string>

#include <VxUtil/VxUtilExport.h>

/// The domain that a device belongs to: the name of the database that holds its data.
///
/// Thread safety: distinct objects may be used concurrently.
class VXUTIL_EXPORT CVXDomain {
  public:
    /// Constructs a domain with an empty database name.
    CVXDomain() = default;

    /// Constructs the domain whose data is in the database `domainDBName`.
    explicit CVXDomain(const std::string& domainDBName);

    /// Returns the name of the database. The reference remains valid until the domain is assigned
    /// to or destroyed.
    const std::string& GetDomainDBName() const noexcept { return domainDBName_; }

  private:
    std::string domainDBName_;
};
