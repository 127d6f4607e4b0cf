#pragma once

#include <string>

#include <VxUtil/CVXDomain.h>
#include <VxUtil/VX128Guid.h>
#include <VxUtil/VxUtilExport.h>

/// Who a device is: its 128-bit identifier, its host name and its domain. A plain value: a copy is
/// independent of its source.
///
/// The references that getters return stay valid while the object lives, and show what is set
/// later.
///
/// Thread rule: distinct objects may be used at the same time.
class VXUTIL_EXPORT CDeviceIdentifier {
  public:
    /// Nobody: an invalid identifier, no host name, no domain.
    CDeviceIdentifier() = default;

    /// Copies all three parts.
    CDeviceIdentifier(const VX128Guid& deviceId, const std::string& hostName,
                      const CVXDomain& domain = {});

    /// The 128-bit identifier.
    const VX128Guid& GetDeviceId() const noexcept { return deviceId_; }
    /// The host name; the setter copies. @{
    const std::string& GetHostName() const noexcept { return hostName_; }
    void SetHostName(const std::string& hostName);
    /// @}
    /// The domain; the setter copies. @{
    const CVXDomain& GetDomain() const noexcept { return domain_; }
    void SetDomain(const CVXDomain& domain);
    /// @}

  private:
    VX128Guid deviceId_;
    std::string hostName_;
    CVXDomain domain_;
};
