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

/// One unit of device data on its way into the store: a configuration file, the output of a
/// command, a table or a structured result of one device at one time.
///
/// A caller constructs a record from a device identity and a type, sets its fields in any order,
/// and takes the two checksum keys under which the store files it and its JSON views. Every call
/// computes keys and views from the current fields. The class can be used directly; derived classes
/// override some of the virtual operations, which the views call.
///
/// Surprises: several getters are not const, and the meta key of this class contains the device's
/// own identifier even if GetDevId returns that of a node. Returned references remain valid for the
/// lifetime of the record.
///
/// Thread safety: not safe for concurrent use, except that GetDataMD5CA and SetDataMD5CA may be
/// called from any thread at any time, also while another thread takes a key or a view.
class DATAENGINE_EXPORT CDEDataBase {
  public:
    /// Constructs a record of type "none" without a device.
    CDEDataBase();

    /// Constructs a record of the device `id`, which is copied, and of type `type`.
    ///
    /// If the device identifier is valid, its text becomes the node's id. Otherwise a host name of
    /// the form "N:" type ":" id names a node: the text up to the next colon becomes the node's
    /// type, everything after that colon the node's id, and the record's host name is cleared. Any
    /// other host name stays unchanged.
    CDEDataBase(const CDeviceIdentifier& id, EnumDEDataType type);

    /// Neither copyable nor movable: records are passed by reference. @{
    CDEDataBase(const CDEDataBase&) = delete;
    CDEDataBase& operator=(const CDEDataBase&) = delete;
    /// @}

    virtual ~CDEDataBase();

    /// Returns the meta key, which identifies the record: the checksum of the concatenated
    /// identifier text, type text and GetName. Records of different nodes that share type and name
    /// have the same key, because the key contains the device's identifier, not the node's id.
    virtual std::string GetMetaMD5();

    /// Returns the record's name; empty unless overridden.
    virtual std::string GetName() const;

    /// Returns the data key, which identifies the record's content: GetDataMD5CA for the types
    /// "sysTable" and "nctTable", otherwise the checksum of the data, including empty data.
    virtual std::string GetDataMD5();

    /// Returns a copy of the checksum set by SetDataMD5CA; empty until then.
    ///
    /// Throws std::system_error if the lock fails.
    virtual std::string GetDataMD5CA();

    /// Sets the checksum that GetDataMD5CA returns.
    ///
    /// Throws std::system_error if the lock fails; the checksum is then unchanged.
    virtual void SetDataMD5CA(const std::string& value);

    /// Writes the status view into `out`, which is null or an object: "devId", "type", "name",
    /// "param" (even if null), and "props" unless the properties are empty. Leaves other keys of
    /// `out` unchanged. Returns true.
    bool GetDEStatus(vxJson::Value& out) const;

    /// Returns the full view for the store: "devId", "name", "type", "time", "flag", "errorLog"
    /// (its first 1024 bytes, absent if empty), "data" (binary), "md5", and "param" and "props"
    /// unless they are empty. Copies the data twice.
    vxJson::Value GetODJson();

    /// Returns the device data document: "devId", "devName", "type", "name", "uploadDate",
    /// "subName" (the parameters), "content" (the data as a string) and "length" (of the data, in
    /// bytes). For the type "sysTable", "type" holds the record's name and "name" is absent.
    ///
    /// The caller owns the result and must delete it.
    vxJson::Value* GetDeviceDataJSon();

    /// Returns the text of a type: "none", "config", "cmd", "sysTable", "nctTable", "parser",
    /// "pingtrace" or "raw"; "none" for a number outside 1 to 7.
    static std::string TypeInt2Str(EnumDEDataType type);

    /// Returns the type with this text, compared byte by byte, or DEDataTypeNone.
    static EnumDEDataType TypeStr2Int(std::string text);

    /// Returns the device's text identifier: the node's id if the device identifier is invalid and
    /// the node has a type, otherwise the text of the device identifier, valid or not.
    std::string GetDevId() const;

    /// Replaces the device. The node identity stays as constructed; the host name of `id` is not
    /// parsed.
    void SetDevId(const CDeviceIdentifier& id) { deviceIdentifier_ = id; }

    /// Sets the device's domain to a copy of `domain`.
    void SetDomain(const CVXDomain& domain) { deviceIdentifier_.SetDomain(domain); }

    /// Returns the database name of the device's domain.
    std::string GetDomainDBName() { return deviceIdentifier_.GetDomain().GetDomainDBName(); }

    /// The record's type, part of its keys and views. @{
    EnumDEDataType GetType() const { return type_; }
    void SetType(EnumDEDataType type) { type_ = type; }
    /// @}

    /// The record's time, in milliseconds since the Unix epoch. @{
    long long GetTime() { return time_; }
    void SetTime(long long time) { time_ = time; }
    /// @}

    /// Returns the day of the month of the record's time, 1 to 31, in UTC.
    int GetDay();

    /// A second time, stored for the caller and not part of any view. @{
    long long GetRealDataTime() { return realDataTime_; }
    void SetRealDataTime(long long time) { realDataTime_ = time; }
    /// @}

    /// Returns the tasks that produced the record.
    const std::vector<CDETaskInfo>& GetTaskInfo() const { return taskInfo_; }

    /// Copies `taskInfo`, which stays unchanged.
    void SetTaskInfo(std::vector<CDETaskInfo>& taskInfo) { taskInfo_ = taskInfo; }

    /// Returns whether at least one task is on demand.
    bool HasOnDemandTask() const;

    /// Returns whether at least one task is shared, that is, not on demand.
    bool HadSharedTask() const;

    /// The caller's flag word, only in the full view. @{
    int GetFlag() { return flag_; }
    void SetFlag(int flag) { flag_ = flag; }
    /// @}

    /// The source of the data, stored for the caller and not part of any view. @{
    EnumDEDataSource GetDataSource() { return dataSource_; }
    void SetDataSource(EnumDEDataSource source) { dataSource_ = source; }
    /// @}

    /// The payload, arbitrary bytes. @{
    std::string& GetData() { return data_; }
    const std::string& GetData() const { return data_; }
    void SetData(const std::string& data) { data_ = data; }
    /// @}

    /// The trigger key; empty if the record needs no trigger. The getter returns a copy. @{
    std::string GetTriggerKey() { return triggerKey_; }
    void SetTriggerKey(const std::string& key) { triggerKey_ = key; }
    /// @}

    /// Returns whether a trigger key is set.
    bool IsNeedTrigger() { return !triggerKey_.empty(); }

    /// The whole error text, of any length. The getter returns a copy. @{
    std::string GetErrorLog() { return errorLog_; }
    void SetErrorLog(const std::string& log) { errorLog_ = log; }
    /// @}

    /// The record's parameters, initially null. The setter copies its argument. @{
    const vxJson::Value& GetParam() const { return param_; }
    void SetParam(const vxJson::Value& param) { param_ = param; }
    /// @}

    /// Further properties, initially null: "props" in the views. @{
    vxJson::Value& GetProperties() { return properties_; }
    const vxJson::Value& GetProperties() const { return properties_; }
    void SetProperties(const vxJson::Value& properties) { properties_ = properties; }
    /// @}

    /// Whether to update the data status, stored for the caller; initially true. @{
    bool GetIsUpdateDataStatus() { return isUpdateDataStatus_; }
    void SetIsUpdateDataStatus(bool update) { isUpdateDataStatus_ = update; }
    /// @}

    /// An alert, stored for the caller and not part of any view. @{
    const std::string& GetGBAlert() { return gbAlert_; }
    void SetGBAlert(const std::string& alert) { gbAlert_ = alert; }
    /// @}

    /// The JSON of an alert, stored for the caller and not part of any view. The setter copies
    /// `json`, which stays unchanged. @{
    vxJson::Value& GetJsonForGBAlert() { return jsonForGBAlert_; }
    void SetJsonForGBAlert(vxJson::Value& json) { jsonForGBAlert_ = json; }
    /// @}

  private:
    void IdentifyNode();

    CDeviceIdentifier deviceIdentifier_;
    NodeIdentify nodeIdentify_;  // used if the device identifier is invalid; no identity if
                                 // nodeType is empty
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
    std::mutex dataMD5CALock_;  // guards only dataMD5CA_; nothing is called while it is held
    std::string dataMD5CA_;
    bool isUpdateDataStatus_ = true;
    std::string gbAlert_;
    vxJson::Value jsonForGBAlert_{static_cast<vxJson::ValueType>(0), false};
};
