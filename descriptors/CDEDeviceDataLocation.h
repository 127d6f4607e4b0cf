#pragma once

#include <string>

#include "contracts/IJsonSerialize.h"

/// The location of a stored unit's bytes: collection, file, offset and length.
///
/// There are no setters: a constructor, an assignment or a load fills an object. Returned
/// references remain valid for the lifetime of the object.
///
/// Thread safety: not safe for concurrent use.
class DATAENGINE_EXPORT CDEDeviceDataLocation : public IJsonSerialize {
  public:
    /// Constructs a location with empty strings and zeros.
    CDEDeviceDataLocation() = default;

    /// Constructs a location. The arguments are not validated.
    CDEDeviceDataLocation(const std::string& collectionName, const std::string& fileName,
                          long long offset, long long len);
    /// A moved-from object has empty strings and keeps its numbers. Self-assignment has no effect.
    /// @{
    CDEDeviceDataLocation(const CDEDeviceDataLocation&) = default;
    CDEDeviceDataLocation& operator=(const CDEDeviceDataLocation&) = default;
    CDEDeviceDataLocation(CDEDeviceDataLocation&& other) noexcept;
    CDEDeviceDataLocation& operator=(CDEDeviceDataLocation&& other) noexcept;
    /// @}

    /// Returns the collection that holds the bytes.
    const std::string& GetCollectionName() const { return collectionName_; }
    /// Returns the file within the collection.
    const std::string& GetFileName() const { return fileName_; }
    /// Returns the offset of the data in the file, in bytes.
    long long GetOffSet() const { return offset_; }
    /// Returns the length of the data, in bytes.
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
