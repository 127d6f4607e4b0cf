// Builds the record of one payload and prints its keys and its views.
#include <VxUtil/CDeviceIdentifier.h>
#include <VxUtil/CVXNonCryptographicChecksum.h>
#include <VxUtil/VX128Guid.h>
#include <VxUtil/vxJson.h>

#include <chrono>
#include <memory>

#ifdef DATAENGINE_TOOL_BSON
#include "bson/Bson.h"
#endif
#include "records/CDEDataConfigFile.h"
#include "records/CDEDataShowCommand.h"
#include "records/CDEDataStructureData.h"
#include "tools/dataengine/Commands.h"
#include "tools/dataengine/Failure.h"
#include "tools/dataengine/Files.h"

namespace tool {
namespace {

/// Returns the device with this GUID; any other text is a host name, or N:type:id for a node.
CDeviceIdentifier MakeDevice(const std::string& text) {
    try {
        return CDeviceIdentifier(VX128Guid(text), "");
    } catch (const std::invalid_argument&) {
        return CDeviceIdentifier(VX128Guid(), text);
    }
}

std::string ChecksumOf(const std::string& bytes) {
    return CVXNonCryptographicChecksum::GetChecksum(
        reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
}

std::unique_ptr<CDEDataBase> MakeConfig(const CDeviceIdentifier& device, const std::string& name,
                                        const std::string& payload) {
    if (!name.empty())
        throw UsageError("a configuration has no NAME in the store; give an empty one: ''");
    auto record = std::make_unique<CDEDataConfigFile>(device);
    record->SetDataMD5(ChecksumOf(payload));
    return record;
}

std::unique_ptr<CDEDataBase> MakeCommand(const CDeviceIdentifier& device, const std::string& name) {
    auto record = std::make_unique<CDEDataShowCommand>(device);
    record->SetCommand(name);
    return record;
}

std::unique_ptr<CDEDataBase> MakeStructured(CDeviceIdentifier& device, EnumDEDataType type,
                                            const std::string& name, const std::string& payload) {
    auto record = std::make_unique<CDEDataStructureData>(device, type);
    record->SetLocation(name);
    if (type == DEDataTypeSysTable || type == DEDataTypeNctTable)
        record->SetDataMD5CA(ChecksumOf(payload));
    return record;
}

std::unique_ptr<CDEDataBase> MakeRecord(const RecordOptions& options, const std::string& payload) {
    CDeviceIdentifier device = MakeDevice(options.device);
    const EnumDEDataType type = CDEDataBase::TypeStr2Int(options.type);
    auto record = type == DEDataTypeConfig ? MakeConfig(device, options.name, payload)
                  : type == DEDataTypeCmd  ? MakeCommand(device, options.name)
                                           : MakeStructured(device, type, options.name, payload);
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    record->SetTime(
        options.time.value_or(std::chrono::duration_cast<std::chrono::milliseconds>(now).count()));
    record->SetData(payload);
    return record;
}

vxJson::Value ViewOf(CDEDataBase& record, const std::string& view) {
    if (view == "store") return record.GetODJson();
    if (view == "device")
        return std::move(*std::unique_ptr<vxJson::Value>(record.GetDeviceDataJSon()));
    vxJson::Value value;
    if (view == "status") {
        record.GetDEStatus(value);
    } else {
        value["meta"] = record.GetMetaMD5();
        value["data"] = record.GetDataMD5();
    }
    return value;
}

std::string Format(const vxJson::Value& value, const std::string& format) {
#ifdef DATAENGINE_TOOL_BSON
    if (format == "bson") return dataengine::bson::Encode(value);
#else
    if (format == "bson") throw UsageError("this build has no BSON; use --format json");
#endif
    return value.toStyledString() + "\n";
}

}  // namespace

int Record(const RecordOptions& options) {
    CheckPaths({options.file}, {options.output});
    const auto record = MakeRecord(options, ReadFile(options.file));
    std::string output;
    for (const std::string& view : options.views) {
        try {
            output += Format(ViewOf(*record, view), options.format);
        } catch (const vxJson::Error& error) {
            throw Failure(options.file, view + " view: " + error.what());
        }
    }
    WriteFiles({{options.output, output}});
    return 0;
}

}  // namespace tool
