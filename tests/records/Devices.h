#pragma once

#include <VxUtil/CDeviceIdentifier.h>

#include <string>

const std::string kGuidText = "0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0";
const std::string kNoGuidText = "00000000-0000-0000-0000-000000000000";

inline CDeviceIdentifier Device(const std::string& hostName) {
    return {VX128Guid(kGuidText), hostName, CVXDomain("Tenant_1")};
}

inline CDeviceIdentifier Node(const std::string& hostName) {
    return {VX128Guid(), hostName};
}
