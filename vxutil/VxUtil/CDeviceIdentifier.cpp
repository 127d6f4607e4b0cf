#include <VxUtil/CDeviceIdentifier.h>

CDeviceIdentifier::CDeviceIdentifier(const VX128Guid& deviceId, const std::string& hostName,
                                     const CVXDomain& domain)
    : deviceId_(deviceId), hostName_(hostName), domain_(domain) {}

void CDeviceIdentifier::SetHostName(const std::string& hostName) {
    hostName_ = hostName;
}

void CDeviceIdentifier::SetDomain(const CVXDomain& domain) {
    domain_ = domain;
}
