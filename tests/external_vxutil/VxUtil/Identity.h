#pragma once

#include <ctime>
#include <string>

// The other classes that the data engine may use, with the operations that it may call.

struct VX128Guid {
    bool IsValid() const { return false; }
    std::string ToUUIDString(bool) const { return "no GUID"; }
};

struct CVXDomain {
    const std::string& GetDomainDBName() const { return dbName; }
    std::string dbName;
};

struct CDeviceIdentifier {
    const VX128Guid& GetDeviceId() const { return guid; }
    const std::string& GetHostName() const { return hostName; }
    void SetHostName(const std::string& name) { hostName = name; }
    const CVXDomain& GetDomain() const { return domain; }
    void SetDomain(const CVXDomain& other) { domain = other; }
    VX128Guid guid;
    std::string hostName;
    CVXDomain domain;
};

struct NodeIdentify {
    std::string nodeType;
    std::string nodeId;
};

struct TimerHelper {
    // Counts seconds, where the bundled library counts milliseconds.
    static tm Time2UTCTm(std::time_t time) { return *std::gmtime(&time); }
};

struct CVXNonCryptographicChecksum {
    static std::string GetChecksum(const unsigned char* bytes, int length) {
        return "checksum of " + std::string(bytes, bytes + length);
    }
};
