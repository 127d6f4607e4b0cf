#include <VxUtil/CDeviceIdentifier.h>
#include <VxUtil/CVXNonCryptographicChecksum.h>

#include <memory>
#include <string>

#include "bson/Bson.h"
#include "python/src/Buffer.h"
#include "python/src/GilRelease.h"
#include "python/src/Module.h"
#include "python/src/Values.h"
#include "records/CDEDataConfigFile.h"
#include "records/CDEDataShowCommand.h"
#include "records/CDEDataStructureData.h"

namespace dataengine::python {
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
                                        const std::string& checksum) {
    if (!name.empty()) throw py::value_error("a record of type config has no name");
    auto record = std::make_unique<CDEDataConfigFile>(device);
    record->SetDataMD5(checksum);
    return record;
}

std::unique_ptr<CDEDataBase> MakeCommand(const CDeviceIdentifier& device, const std::string& name) {
    auto record = std::make_unique<CDEDataShowCommand>(device);
    record->SetCommand(name);
    return record;
}

std::unique_ptr<CDEDataBase> MakeStructured(CDeviceIdentifier& device, EnumDEDataType type,
                                            const std::string& name, const std::string& checksum) {
    auto record = std::make_unique<CDEDataStructureData>(device, type);
    record->SetLocation(name);
    record->SetDataMD5CA(checksum);
    return record;
}

EnumDEDataType TypeOf(const std::string& text) {
    const EnumDEDataType type = CDEDataBase::TypeStr2Int(text);
    if (CDEDataBase::TypeInt2Str(type) == text) return type;
    throw py::value_error("\"" + text + "\" is not a type of records");
}

std::unique_ptr<CDEDataBase> MakeRecord(const py::handle& device, const py::handle& type,
                                        const py::handle& name, const py::handle& data,
                                        const py::handle& time, int flag,
                                        const py::handle& errorLog, const py::handle& param,
                                        const py::handle& props) {
    CDeviceIdentifier identifier = MakeDevice(FromText(device.ptr()));
    const EnumDEDataType kind = TypeOf(FromText(type.ptr()));
    const std::string text = FromText(name.ptr());
    const std::string payload = FromBytes(data);
    const std::string checksum = ChecksumOf(payload);
    auto record = kind == DEDataTypeConfig ? MakeConfig(identifier, text, checksum)
                  : kind == DEDataTypeCmd  ? MakeCommand(identifier, text)
                                           : MakeStructured(identifier, kind, text, checksum);
    record->SetData(payload);
    record->SetTime(FromTime(time));
    record->SetFlag(flag);
    record->SetErrorLog(FromText(errorLog.ptr()));
    record->SetParam(FromPython(param));
    record->SetProperties(FromPython(props));
    return record;
}

vxJson::Value StatusOf(CDEDataBase& record) {
    vxJson::Value status;
    record.GetDEStatus(status);
    return status;
}

py::bytes Encode(const vxJson::Value& document) {
    std::string bytes;
    {
        const GilRelease release;
        bytes = bson::Encode(document);
    }
    return bytes;
}

py::object Decode(const py::handle& data) {
    const Buffer buffer(data);
    vxJson::Value document;
    {
        const GilRelease release;
        document = bson::Decode(buffer.Bytes().data(), buffer.Bytes().size());
    }
    return ToPython(document);
}

}  // namespace

void BindRecords(py::module_& module) {
    py::class_<CDEDataBase> type(module, "Record", py::is_final());
    Seal(type);
    type.def("device", [](CDEDataBase& record) { return ToText(record.GetDevId()); })
        .def("type", [](CDEDataBase& record) { return CDEDataBase::TypeInt2Str(record.GetType()); })
        .def("name", [](CDEDataBase& record) { return ToText(record.GetName()); })
        .def("time", [](CDEDataBase& record) { return ToTime(record.GetTime()); })
        .def("size", [](CDEDataBase& record) { return record.GetData().size(); })
        .def("meta_key", [](CDEDataBase& record) { return ToText(record.GetMetaMD5()); })
        .def("data_key", [](CDEDataBase& record) { return ToText(record.GetDataMD5()); })
        .def("document", [](CDEDataBase& record) { return ToPython(record.GetODJson()); })
        .def("status", [](CDEDataBase& record) { return ToPython(StatusOf(record)); })
        .def("device_document",
             [](CDEDataBase& record) {
                 return ToPython(*std::unique_ptr<vxJson::Value>(record.GetDeviceDataJSon()));
             })
        .def("to_bson", [](CDEDataBase& record) { return Encode(record.GetODJson()); });
    module.def("new_record", &MakeRecord);
    module.def("bson_encode",
               [](const py::dict& document) { return Encode(FromPython(document)); });
    module.def("bson_decode", &Decode);
}

}  // namespace dataengine::python
