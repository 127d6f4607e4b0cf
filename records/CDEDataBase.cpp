#include "records/CDEDataBase.h"

#include <VxUtil/TimerHelper.h>

#include <algorithm>
#include <cstddef>
#include <memory>

#include "contracts/detail/JsonValues.h"
#include "records/detail/RecordChecksum.h"
#include "schema/DataEngineNames.h"
#include "schema/StoreNames.h"

using dataengine::detail::BinaryValue;
using dataengine::detail::NullValue;
using dataengine::detail::RecordChecksum;
using dataengine::detail::TimeValue;

namespace {

constexpr std::size_t kErrorLogViewBytes = 1024;

/// Not a table: that would be filled at load, after the static objects of a program that contains
/// the library.
const std::string& TypeText(int type) {
    namespace names = DataEngineNames::TypeName;
    switch (type) {
        case DEDataTypeConfig:
            return names::config;
        case DEDataTypeCmd:
            return names::cmd;
        case DEDataTypeSysTable:
            return names::sysTable;
        case DEDataTypeNctTable:
            return names::nctTable;
        case DEDataTypeParser:
            return names::parser;
        case DEDataTypePingTrace:
            return names::pingtrace;
        case DEDataTypeRaw:
            return names::raw;
        default:
            return names::none;
    }
}

}  // namespace

CDEDataBase::CDEDataBase() = default;

CDEDataBase::CDEDataBase(const CDeviceIdentifier& id, EnumDEDataType type)
    : deviceIdentifier_(id), type_(type) {
    IdentifyNode();
}

CDEDataBase::~CDEDataBase() = default;

void CDEDataBase::IdentifyNode() {
    if (deviceIdentifier_.GetDeviceId().IsValid()) {
        nodeIdentify_.nodeId = GetDevId();
        return;
    }

    // The host name of a node is "N:" type ":" id.
    const std::string& hostName = deviceIdentifier_.GetHostName();
    if (hostName.compare(0, 2, "N:") != 0) return;
    const std::string name = hostName.substr(2);
    const int colon = static_cast<int>(name.find(':'));  // -1 if there is none
    if (colon < 0) return;

    const auto typeBytes = static_cast<std::size_t>(colon);
    deviceIdentifier_.SetHostName(std::string());
    nodeIdentify_.nodeType = name.substr(0, typeBytes);
    nodeIdentify_.nodeId = name.substr(typeBytes + 1);
}

std::string CDEDataBase::GetDevId() const {
    const VX128Guid& id = deviceIdentifier_.GetDeviceId();
    if (!id.IsValid() && !nodeIdentify_.nodeType.empty()) return nodeIdentify_.nodeId;
    return id.ToUUIDString(true);
}

int CDEDataBase::GetDay() {
    return TimerHelper::Time2UTCTm(time_).tm_mday;
}

std::string CDEDataBase::TypeInt2Str(EnumDEDataType type) {
    return TypeText(type);
}

// By value: part of the binary interface. NOLINTNEXTLINE(performance-unnecessary-value-param)
EnumDEDataType CDEDataBase::TypeStr2Int(std::string text) {
    for (int type = DEDataTypeNone; type <= DEDataTypeRaw; ++type) {
        if (text == TypeText(type)) return static_cast<EnumDEDataType>(type);
    }
    return DEDataTypeNone;
}

bool CDEDataBase::HasOnDemandTask() const {
    return std::any_of(taskInfo_.begin(), taskInfo_.end(),
                       [](const CDETaskInfo& task) { return task.isOnDemand; });
}

bool CDEDataBase::HadSharedTask() const {
    return std::any_of(taskInfo_.begin(), taskInfo_.end(),
                       [](const CDETaskInfo& task) { return !task.isOnDemand; });
}

std::string CDEDataBase::GetMetaMD5() {
    const std::string name = GetName();
    return RecordChecksum(deviceIdentifier_.GetDeviceId().ToUUIDString(true) + TypeInt2Str(type_) +
                          name);
}

std::string CDEDataBase::GetName() const {
    return std::string();
}

std::string CDEDataBase::GetDataMD5() {
    if (type_ == DEDataTypeSysTable || type_ == DEDataTypeNctTable) return GetDataMD5CA();
    return RecordChecksum(data_);
}

std::string CDEDataBase::GetDataMD5CA() {
    const std::lock_guard<std::mutex> lock(dataMD5CALock_);
    return dataMD5CA_;
}

void CDEDataBase::SetDataMD5CA(const std::string& value) {
    const std::lock_guard<std::mutex> lock(dataMD5CALock_);
    dataMD5CA_ = value;
}

bool CDEDataBase::GetDEStatus(vxJson::Value& out) const {
    namespace names = DataEngineNames::MetaRecord;
    out[names::devId] = GetDevId();
    out[names::type] = TypeInt2Str(type_);
    out[names::name] = GetName();
    out[names::param] = param_;
    if (!properties_.empty()) out[DataEngineNames::DataList::props] = properties_;
    return true;
}

vxJson::Value CDEDataBase::GetODJson() {
    namespace names = DataEngineNames::MetaRecord;
    vxJson::Value out = NullValue();
    out[names::devId] = GetDevId();
    out[names::name] = GetName();
    out[names::type] = TypeInt2Str(type_);
    out[names::time] = TimeValue(time_);
    out[names::flag] = flag_;
    if (!errorLog_.empty()) out[names::errorLog] = errorLog_.substr(0, kErrorLogViewBytes);
    out[names::data] = BinaryValue(data_);
    out[names::md5] = GetDataMD5();
    if (!param_.empty()) out[names::param] = param_;
    if (!properties_.empty()) out[DataEngineNames::DataList::props] = properties_;
    return out;
}

vxJson::Value* CDEDataBase::GetDeviceDataJSon() {
    namespace names = StoreNames::DeviceData;
    auto out = std::make_unique<vxJson::Value>(NullValue());
    (*out)[names::devId] = GetDevId();
    (*out)[names::devName] = deviceIdentifier_.GetHostName();
    (*out)[names::type] = TypeInt2Str(type_);
    // The type of a system table is its own name, such as "arpTable".
    (*out)[type_ == DEDataTypeSysTable ? names::type : names::name] = GetName();
    (*out)[names::uploadDate] = TimeValue(time_);
    (*out)[names::subName] = param_;
    (*out)[names::content] = data_;
    (*out)[names::length] = static_cast<unsigned long long>(data_.size());
    return out.release();
}
