#pragma once

#include <VxUtil/CVXDomain.h>
#include <VxUtil/VX128Guid.h>

#include <string>

class CDeviceIdentifier {
  public:
    const VX128Guid& GetDeviceId() const { return deviceId_; }
    const std::string& GetHostName() const { return hostName_; }
    void SetHostName(const std::string& hostName) { hostName_ = hostName; }
    const CVXDomain& GetDomain() const { return domain_; }
    void SetDomain(const CVXDomain& domain) { domain_ = domain; }

  private:
    VX128Guid deviceId_;
    std::string hostName_;
    CVXDomain domain_;
};
