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
/// saved as a plain integer though a time value is read as well. A move is a copy.
///
/// Thread rule: no lock; an object belongs to one thread at a time.
class DATAENGINE_EXPORT CDEDeviceMetadata {
  public:
    CDEDeviceMetadata();
    CDEDeviceMetadata(const CDEDeviceMetadata&) = default;
    CDEDeviceMetadata& operator=(const CDEDeviceMetadata&) = default;

    const std::string& GetDevId() const { return devId_; }
    void SetDevId(const std::string& devId) { devId_ = devId; }

    const std::string& GetName() const { return name_; }
    void SetName(const std::string& name) { name_ = name; }

    const std::string& GetType() const { return type_; }
    /// Takes a writable reference and only reads from it.
    void SetType(std::string& type) { type_ = type; }

    const std::string& GetSourceType() const { return sourceType_; }
    void SetSourceType(const std::string& sourceType) { sourceType_ = sourceType; }

    const vxJson::Value& GetParam() const { return param_; }
    void SetParam(const vxJson::Value& param) { param_ = param; }

    const vxJson::Value& GetProperties() const { return properties_; }
    void SetProperties(const vxJson::Value& properties) { properties_ = properties; }

    const std::string& GetMD5() const { return md5_; }
    void SetMD5(const std::string& md5) { md5_ = md5; }

    std::string GetMD5CA() const { return md5CA_; }
    void SetMD5CA(const std::string& md5CA) { md5CA_ = md5CA; }

    int GetFlag() const { return flag_; }
    void SetFlag(int flag) { flag_ = flag; }

    long long GetTime() const { return time_; }
    void SetTime(long long time) { time_ = time; }

    const std::string& GetData() const { return data_; }
    /// Replaces the data, in spite of its name.
    void SetDate(const std::string& data) { data_ = data; }

    const CDEDeviceDataLocation& GetDataLocation() const { return dataLocation_; }
    void SetDataLocation(const CDEDeviceDataLocation& dataLocation) {
        dataLocation_ = dataLocation;
    }

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
