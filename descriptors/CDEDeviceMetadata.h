#pragma once

#include <VxUtil/vxJson.h>

#include <string>

#include "contracts/DataEngineExport.h"
#include "descriptors/CDEDeviceDataLocation.h"

// The destructor is not virtual by design: the two operations at the end, in this order, are the
// only virtual ones. A derived object must not be deleted through a pointer to this class.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// The description of one stored unit of device data: device, name, type, parameters, checksums,
/// time and the location of its bytes.
///
/// Mirrors IJsonSerialize but does not derive from it. Loading and saving differ: "data" is loaded
/// but never saved; the flag and the second checksum are neither loaded nor saved; "time" is saved
/// as a plain integer, but a time value loads as well. A move copies, so the source keeps its
/// fields. Setters copy their arguments. Returned references remain valid for the lifetime of the
/// object.
///
/// Thread safety: not safe for concurrent use.
class DATAENGINE_EXPORT CDEDeviceMetadata {
  public:
    /// Constructs empty strings, null values and zeros.
    CDEDeviceMetadata();
    /// Copies every field. @{
    CDEDeviceMetadata(const CDEDeviceMetadata&) = default;
    CDEDeviceMetadata& operator=(const CDEDeviceMetadata&) = default;
    /// @}

    /// The device's text identifier. @{
    const std::string& GetDevId() const { return devId_; }
    void SetDevId(const std::string& devId) { devId_ = devId; }
    /// @}

    /// The record's name. @{
    const std::string& GetName() const { return name_; }
    void SetName(const std::string& name) { name_ = name; }
    /// @}

    /// Returns the record's type as text.
    const std::string& GetType() const { return type_; }
    /// Sets the type. The argument is only read.
    void SetType(std::string& type) { type_ = type; }

    /// The type of the source as text, not interpreted. @{
    const std::string& GetSourceType() const { return sourceType_; }
    void SetSourceType(const std::string& sourceType) { sourceType_ = sourceType; }
    /// @}

    /// The record's parameters. @{
    const vxJson::Value& GetParam() const { return param_; }
    void SetParam(const vxJson::Value& param) { param_ = param; }
    /// @}

    /// The record's properties: "props" in JSON. @{
    const vxJson::Value& GetProperties() const { return properties_; }
    void SetProperties(const vxJson::Value& properties) { properties_ = properties; }
    /// @}

    /// The checksum of the data. @{
    const std::string& GetMD5() const { return md5_; }
    void SetMD5(const std::string& md5) { md5_ = md5; }
    /// @}

    /// The second checksum, not part of the JSON form. The getter returns a copy. @{
    std::string GetMD5CA() const { return md5CA_; }
    void SetMD5CA(const std::string& md5CA) { md5CA_ = md5CA; }
    /// @}

    /// The caller's flag word, not part of the JSON form. @{
    int GetFlag() const { return flag_; }
    void SetFlag(int flag) { flag_ = flag; }
    /// @}

    /// The record's time, in milliseconds since the Unix epoch. @{
    long long GetTime() const { return time_; }
    void SetTime(long long time) { time_ = time; }
    /// @}

    /// Returns the data, loaded but never saved.
    const std::string& GetData() const { return data_; }
    /// Sets the data (the name is a historical misspelling).
    void SetDate(const std::string& data) { data_ = data; }

    /// The location of the unit's bytes in the store. @{
    const CDEDeviceDataLocation& GetDataLocation() const { return dataLocation_; }
    void SetDataLocation(const CDEDeviceDataLocation& dataLocation) {
        dataLocation_ = dataLocation;
    }
    /// @}

    /// Replaces every field except the flag and the second checksum; reads "data" last, after
    /// "dataLocation". Returns true.
    virtual bool LoadFromJson(const vxJson::Value& source);

    /// Writes "devId", "name", "type", "sourceType", "param", "props", "md5", "time" and
    /// "dataLocation", including null parameters. Returns true.
    virtual bool SaveToJson(vxJson::Value& target) const;

  private:
    std::string devId_;
    std::string name_;
    std::string type_;
    std::string sourceType_;
    vxJson::Value param_;
    vxJson::Value properties_;
    std::string md5_;
    std::string md5CA_;
    int flag_ = 0;
    long long time_ = 0;
    std::string data_;
    CDEDeviceDataLocation dataLocation_;
};

#pragma GCC diagnostic pop
