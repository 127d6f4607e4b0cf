#pragma once

#include <string>

#include "contracts/IJsonSerialize.h"

/// Where the bytes of a stored unit lie: in which collection and file, at what offset, how many.
///
/// There are no setters: an object is filled by a constructor, an assignment or a load. References
/// that getters return lead into the object and live as long as it.
///
/// Thread rule: an object belongs to one thread at a time.
class DATAENGINE_EXPORT CDEDeviceDataLocation : public IJsonSerialize {
  public:
    /// Empty texts, and 0 for both numbers.
    CDEDeviceDataLocation() = default;

    /// Takes all four unchecked.
    CDEDeviceDataLocation(const std::string& collectionName, const std::string& fileName,
                          long long offset, long long len);
    /// A move leaves the source's texts empty and its numbers as they were. An assignment from
    /// itself changes nothing. @{
    CDEDeviceDataLocation(const CDEDeviceDataLocation&) = default;
    CDEDeviceDataLocation& operator=(const CDEDeviceDataLocation&) = default;
    CDEDeviceDataLocation(CDEDeviceDataLocation&& other) noexcept;
    CDEDeviceDataLocation& operator=(CDEDeviceDataLocation&& other) noexcept;
    /// @}

    /// The collection that holds the bytes.
    const std::string& GetCollectionName() const { return collectionName_; }
    /// The file within the collection.
    const std::string& GetFileName() const { return fileName_; }
    /// Where the data starts in the file, in bytes.
    long long GetOffSet() const { return offset_; }
    /// How long the data is, in bytes.
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
