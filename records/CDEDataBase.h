#pragma once

#include <VxUtil/CDeviceIdentifier.h>
#include <VxUtil/CVXDomain.h>
#include <VxUtil/NodeIdentify.h>
#include <VxUtil/vxJson.h>

#include <mutex>
#include <string>
#include <vector>

#include "contracts/DataEngineExport.h"
#include "records/CDETaskInfo.h"
#include "records/EnumDEDataSource.h"
#include "records/EnumDEDataType.h"

/// One unit of device data on its way into the store: one configuration file, one command's output,
/// one table or one structured result of one device at one time.
///
/// A caller builds a record from a device identity and a type, fills its fields in any order, and
/// asks it for the two checksum keys under which the store files it and for its JSON views. Keys
/// and views are computed anew from the current fields at each call. The class can be used as it
/// is; the kinds derived from it replace some of the virtual operations, and the views call those.
///
/// Where it differs from what one would expect: several getters are not const, and the meta key of
/// this class is made with the device's own identifier even where GetDevId gives a node's.
///
/// Thread rule: a record belongs to one thread at a time, except that GetDataMD5CA and SetDataMD5CA
/// may run on any thread at any time. Other threads may therefore call SetDataMD5CA while a key or
/// a view is taken.
class DATAENGINE_EXPORT CDEDataBase {
  public:
    /// A record of no device and of type "none".
    CDEDataBase();

    /// A record of the device `id`, which is copied, and of type `type`.
    ///
    /// A valid device identifier stands, and its text becomes the node's id. Otherwise a host name
    /// of the form "N:" type ":" id names a node: the text up to the next colon is the node's type,
    /// all that lies behind it the node's id, and the record's host name is cleared. Any other host
    /// name stays as it is.
    CDEDataBase(const CDeviceIdentifier& id, EnumDEDataType type);

    /// Not copied and not moved: a record is handed on by reference. @{
    CDEDataBase(const CDEDataBase&) = delete;
    CDEDataBase& operator=(const CDEDataBase&) = delete;
    /// @}

    virtual ~CDEDataBase();

    /// The key of what the record is: the checksum of the identifier's text, the type's text and
    /// GetName, one behind the other. Records of different nodes, but of one type and name, have
    /// the same key, since the identifier enters and not the node's id.
    virtual std::string GetMetaMD5();

    /// The record's name; empty here.
    virtual std::string GetName() const;

    /// The key of what the record holds: for the types "sysTable" and "nctTable" what GetDataMD5CA
    /// gives, for the others the checksum of the data, also of empty data.
    virtual std::string GetDataMD5();

    /// A copy of the checksum that was set from outside; empty until then.
    ///
    /// Throws std::system_error if the lock fails.
    virtual std::string GetDataMD5CA();

    /// Replaces the checksum that is set from outside.
    ///
    /// Throws std::system_error if the lock fails, and changes nothing then.
    virtual void SetDataMD5CA(const std::string& value);

    /// Writes the status view into `out`, which is null or an object: "devId", "type", "name",
    /// "param" (null too), and "props" unless the properties are empty. Other keys of `out` stay.
    /// Always returns true.
    bool GetDEStatus(vxJson::Value& out) const;

    /// The full view for the store: "devId", "name", "type", "time", "flag", "errorLog" (its first
    /// 1024 bytes, absent if empty), "data" (binary), "md5", and "param" and "props" unless they
    /// are empty. Copies the data twice over.
    vxJson::Value GetODJson();

    /// The stored device data document: "devId", "devName", "type", "name", "uploadDate",
    /// "subName" (the parameters), "content" (the data as a string) and "length" (its bytes). For
    /// the type "sysTable" the record's name stands in "type", and "name" is absent.
    ///
    /// The caller owns the result and must delete it.
    vxJson::Value* GetDeviceDataJSon();

    /// The text of a type: "none", "config", "cmd", "sysTable", "nctTable", "parser", "pingtrace"
    /// or "raw". A number outside 1 to 7 gives "none".
    static std::string TypeInt2Str(EnumDEDataType type);

    /// The type of a text, compared byte by byte; DEDataTypeNone for any other text.
    static EnumDEDataType TypeStr2Int(std::string text);

    /// What stands for the device: the node's id if the identifier is invalid and the node has a
    /// type, else the text of the identifier, valid or not.
    std::string GetDevId() const;

    /// Replaces the device. The node identity stays as the constructor settled it; the host name of
    /// `id` is not looked at.
    void SetDevId(const CDeviceIdentifier& id) { deviceIdentifier_ = id; }

    /// Replaces the device's domain by a copy of `domain`.
    void SetDomain(const CVXDomain& domain) { deviceIdentifier_.SetDomain(domain); }

    /// The name of the database of the device's domain.
    std::string GetDomainDBName() { return deviceIdentifier_.GetDomain().GetDomainDBName(); }

    /// What the record holds: part of its keys and views. @{
    EnumDEDataType GetType() const { return type_; }
    void SetType(EnumDEDataType type) { type_ = type; }
    /// @}

    /// The record's time, in the unit of TimerHelper. @{
    long long GetTime() { return time_; }
    void SetTime(long long time) { time_ = time; }
    /// @}

    /// The day of the month of the record's time, 1 to 31, in UTC.
    int GetDay();

    /// A further time, kept for the caller; it is in no view. @{
    long long GetRealDataTime() { return realDataTime_; }
    void SetRealDataTime(long long time) { realDataTime_ = time; }
    /// @}

    /// The tasks behind the record. The reference is into the record.
    const std::vector<CDETaskInfo>& GetTaskInfo() const { return taskInfo_; }

    /// Copies `taskInfo`, which is left as it is.
    void SetTaskInfo(std::vector<CDETaskInfo>& taskInfo) { taskInfo_ = taskInfo; }

    /// Whether at least one task is on demand.
    bool HasOnDemandTask() const;

    /// Whether at least one task is shared, that is, not on demand.
    bool HadSharedTask() const;

    /// The caller's flag word; in the full view alone. @{
    int GetFlag() { return flag_; }
    void SetFlag(int flag) { flag_ = flag; }
    /// @}

    /// Where the data came from, kept for the caller; it is in no view. @{
    EnumDEDataSource GetDataSource() { return dataSource_; }
    void SetDataSource(EnumDEDataSource source) { dataSource_ = source; }
    /// @}

    /// The payload, as bytes. The references are into the record. @{
    std::string& GetData() { return data_; }
    const std::string& GetData() const { return data_; }
    void SetData(const std::string& data) { data_ = data; }
    /// @}

    /// A key for the caller; empty if the record needs no trigger. The getter gives a copy. @{
    std::string GetTriggerKey() { return triggerKey_; }
    void SetTriggerKey(const std::string& key) { triggerKey_ = key; }
    /// @}

    /// Whether a trigger key is set.
    bool IsNeedTrigger() { return !triggerKey_.empty(); }

    /// The whole error text, however long; the getter gives a copy. @{
    std::string GetErrorLog() { return errorLog_; }
    void SetErrorLog(const std::string& log) { errorLog_ = log; }
    /// @}

    /// The record's parameters, null at first. The reference is into the record; the setter copies.
    /// @{
    const vxJson::Value& GetParam() const { return param_; }
    void SetParam(const vxJson::Value& param) { param_ = param; }
    /// @}

    /// Further properties, null at first: "props" in the views. The references are into the record.
    /// @{
    vxJson::Value& GetProperties() { return properties_; }
    const vxJson::Value& GetProperties() const { return properties_; }
    void SetProperties(const vxJson::Value& properties) { properties_ = properties; }
    /// @}

    /// Whether to update the data's status, kept for the caller; true at first. @{
    bool GetIsUpdateDataStatus() { return isUpdateDataStatus_; }
    void SetIsUpdateDataStatus(bool update) { isUpdateDataStatus_ = update; }
    /// @}

    /// An alert, kept for the caller; it is in no view. The reference is into the record. @{
    const std::string& GetGBAlert() { return gbAlert_; }
    void SetGBAlert(const std::string& alert) { gbAlert_ = alert; }
    /// @}

    /// An alert's JSON, kept for the caller; it is in no view. The reference is into the record;
    /// the setter copies `json`, which is left as it is. @{
    vxJson::Value& GetJsonForGBAlert() { return jsonForGBAlert_; }
    void SetJsonForGBAlert(vxJson::Value& json) { jsonForGBAlert_ = json; }
    /// @}

  private:
    void SettleIdentity();

    CDeviceIdentifier deviceIdentifier_;
    NodeIdentify nodeIdentify_;  // of a node without a valid identifier; without a type it is none
    EnumDEDataType type_ = DEDataTypeNone;
    long long time_ = 0;
    std::vector<CDETaskInfo> taskInfo_;
    int flag_ = 0;
    EnumDEDataSource dataSource_ = DEDataSourceUnset;
    long long realDataTime_ = 0;
    std::string data_;
    std::string triggerKey_;
    std::string errorLog_;
    vxJson::Value param_{static_cast<vxJson::ValueType>(0), false};
    vxJson::Value properties_{static_cast<vxJson::ValueType>(0), false};
    std::mutex dataMD5CALock_;  // guards dataMD5CA_ alone; nothing is called while it is held
    std::string dataMD5CA_;
    bool isUpdateDataStatus_ = true;
    std::string gbAlert_;
    vxJson::Value jsonForGBAlert_{static_cast<vxJson::ValueType>(0), false};
};
