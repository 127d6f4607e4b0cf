#pragma once

#include <string>

#include <VxUtil/CVXDomain.h>
#include <VxUtil/VX128Guid.h>
#include <VxUtil/VxUtilExport.h>

/// Who a device is: its 128-bit identifier, its host name and its domain. A plain value: a copy is
/// independent of its source.
///
/// Thread rule: distinct objects may be used at the same time.
class VXUTIL_EXPORT CDeviceIdentifier {
  public:
    /// Nobody: an invalid identifier, no host name, no domain.
    CDeviceIdentifier() = default;
    CDeviceIdentifier(const VX128Guid& deviceId, const std::string& hostName,
                      const CVXDomain& domain = {});

    // The references stay valid while the object lives, and show what is set later.
    const VX128Guid& GetDeviceId() const noexcept { return deviceId_; }
    const std::string& GetHostName() const noexcept { return hostName_; }
    void SetHostName(const std::string& hostName);
    const CVXDomain& GetDomain() const noexcept { return domain_; }
    void SetDomain(const CVXDomain& domain);

  private:
    VX128Guid deviceId_;
    std::string hostName_;
    CVXDomain domain_;
};
