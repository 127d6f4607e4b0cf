#pragma once

#include <string>

#include "contracts/IJsonSerialize.h"

/// Where the bytes of a stored unit lie: in which collection and file, at what offset, how many.
///
/// There are no setters: an object is filled by a constructor, an assignment or a load. A move
/// leaves the source's texts empty and its numbers as they were.
///
/// Thread rule: an object belongs to one thread at a time.
class DATAENGINE_EXPORT CDEDeviceDataLocation : public IJsonSerialize {
  public:
    CDEDeviceDataLocation() = default;
    CDEDeviceDataLocation(const std::string& collectionName, const std::string& fileName,
                          long long offset, long long len);
    CDEDeviceDataLocation(const CDEDeviceDataLocation&) = default;
    CDEDeviceDataLocation& operator=(const CDEDeviceDataLocation&) = default;
    // Written out for the source's empty texts.
    CDEDeviceDataLocation(CDEDeviceDataLocation&& other) noexcept;
    CDEDeviceDataLocation& operator=(CDEDeviceDataLocation&& other) noexcept;

    const std::string& GetCollectionName() const { return collectionName_; }
    const std::string& GetFileName() const { return fileName_; }
    long long GetOffSet() const { return offset_; }
    long long GetLen() const { return len_; }

    /// Reads "collectionName", "fileName", "offset" and "len".
    bool LoadFromJson(const vxJson::Value& source) override;
    /// Writes the same four keys.
    bool SaveToJson(vxJson::Value& target) const override;

  private:
    std::string collectionName_;
    std::string fileName_;
    long long offset_ = 0;
    long long len_ = 0;
};
