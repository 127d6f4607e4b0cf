#pragma once

#include <VxUtil/vxJson.h>

#include <string>

#include "contracts/DataEngineExport.h"
#include "descriptors/CDEDeviceDataLocation.h"

// Its destructor is not virtual by design: the class has the two virtual operations below, in this
// order, and nothing else. Whoever derives from it must not delete through a pointer to it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// One stored unit of device data: which device, what name, type and parameters, its checksums,
/// its time and where its bytes lie.
///
/// It looks like an IJsonSerialize and is none. Its two JSON forms differ: "data" is loaded and
/// never saved, the flag and the second checksum are in neither and outlive a load, and "time" is
/// saved as a plain integer though a time value is read as well. A move is a copy. Setters copy;
/// references that getters return lead into the object and live as long as it.
///
/// Thread rule: no lock; an object belongs to one thread at a time.
class DATAENGINE_EXPORT CDEDeviceMetadata {
  public:
    /// Empty texts, null values, 0 for the numbers.
    CDEDeviceMetadata();
    /// Copies every field. @{
    CDEDeviceMetadata(const CDEDeviceMetadata&) = default;
    CDEDeviceMetadata& operator=(const CDEDeviceMetadata&) = default;
    /// @}

    /// The device, as text. @{
    const std::string& GetDevId() const { return devId_; }
    void SetDevId(const std::string& devId) { devId_ = devId; }
    /// @}

    /// The record's name. @{
    const std::string& GetName() const { return name_; }
    void SetName(const std::string& name) { name_ = name; }
    /// @}

    /// The record's type, as text.
    const std::string& GetType() const { return type_; }
    /// Takes a writable reference and only reads from it.
    void SetType(std::string& type) { type_ = type; }

    /// The type of the source, as text; only carried. @{
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

    /// The second checksum, in neither JSON form. The getter gives a copy. @{
    std::string GetMD5CA() const { return md5CA_; }
    void SetMD5CA(const std::string& md5CA) { md5CA_ = md5CA; }
    /// @}

    /// The caller's flag word, in neither JSON form. @{
    int GetFlag() const { return flag_; }
    void SetFlag(int flag) { flag_ = flag; }
    /// @}

    /// The record's time, in milliseconds since the Unix epoch. @{
    long long GetTime() const { return time_; }
    void SetTime(long long time) { time_ = time; }
    /// @}

    /// The data's bytes, as a load read them; a save leaves them out.
    const std::string& GetData() const { return data_; }
    /// Replaces the data, in spite of its name.
    void SetDate(const std::string& data) { data_ = data; }

    /// Where the unit's bytes lie in the store. @{
    const CDEDeviceDataLocation& GetDataLocation() const { return dataLocation_; }
    void SetDataLocation(const CDEDeviceDataLocation& dataLocation) {
        dataLocation_ = dataLocation;
    }
    /// @}

    /// Replaces every field but the flag and the second checksum; "data" comes last, behind
    /// "dataLocation". Returns true.
    virtual bool LoadFromJson(const vxJson::Value& source);

    /// Writes "devId", "name", "type", "sourceType", "param", "props", "md5", "time" and
    /// "dataLocation", a null parameter too. Returns true.
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
