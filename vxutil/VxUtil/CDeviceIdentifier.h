#pragma once

#include <string>

#include <VxUtil/CVXDomain.h>
#include <VxUtil/VX128Guid.h>
#include <VxUtil/VxUtilExport.h>

/// The identity of a device: its 128-bit identifier, its host name and its domain. A plain value
/// class; a copy is independent of its source.
///
/// Returned references remain valid for the lifetime of the object and see later changes.
///
/// Thread safety: distinct objects may be used concurrently.
class VXUTIL_EXPORT CDeviceIdentifier {
  public:
    /// Constructs a blank identity: an invalid identifier, no host name, no domain.
    CDeviceIdentifier() = default;

    /// Constructs an identity from copies of its three parts.
    CDeviceIdentifier(const VX128Guid& deviceId, const std::string& hostName,
                      const CVXDomain& domain = {});

    /// Returns the 128-bit identifier.
    const VX128Guid& GetDeviceId() const noexcept { return deviceId_; }
    /// The host name. The setter copies its argument. @{
    const std::string& GetHostName() const noexcept { return hostName_; }
    void SetHostName(const std::string& hostName);
    /// @}
    /// The domain. The setter copies its argument. @{
    const CVXDomain& GetDomain() const noexcept { return domain_; }
    void SetDomain(const CVXDomain& domain);
    /// @}

  private:
    VX128Guid deviceId_;
    std::string hostName_;
    CVXDomain domain_;
};
