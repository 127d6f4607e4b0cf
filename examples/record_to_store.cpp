// Builds a record of one device and prints what a store would receive: keys and views.
#include <VxUtil/CDeviceIdentifier.h>
#include <VxUtil/CVXNonCryptographicChecksum.h>
#include <VxUtil/VX128Guid.h>
#include <VxUtil/vxJson.h>

#include <climits>
#include <ctime>

#include "examples/Example.h"
#include "records/CDEDataConfigFile.h"
#include "records/CDEDataShowCommand.h"
#include "records/CDEDataStructureData.h"

namespace {

const char usage[] = R"(usage: record_to_store DEVICE KIND NAME FILE [TIME]

Prints the keys under which a store files FILE, and the JSON that it receives.
  DEVICE   a GUID (8-4-4-4-12), a host name, or N:type:id for a node that has neither
  KIND     config, cmd or structured
  NAME     of cmd the command line, of structured the location. A configuration file has no name of
           its own: there NAME becomes its parameter "file"
  FILE     the configuration, the command's output, or the packed structure data
  TIME     milliseconds since 1970 in UTC; now, if it is left out
Payloads are shown by their first bytes.
)";

// [a record into the store]
std::unique_ptr<CDEDataBase> commandRecord(const CDeviceIdentifier& device,
                                           const std::string& command, const std::string& output) {
    auto record = std::make_unique<CDEDataShowCommand>(device);
    record->SetCommand(command);
    record->SetData(output);
    return record;
}

struct Stored {
    std::string metaKey;       // what the record is: device, type and name
    std::string dataKey;       // what it holds
    vxJson::Value status;      // that it is there
    vxJson::Value object;      // all of it
    vxJson::Value deviceData;  // its device data document
};

Stored takeViews(CDEDataBase& record) {
    Stored stored;
    stored.metaKey = record.GetMetaMD5();
    stored.dataKey = record.GetDataMD5();
    record.GetDEStatus(stored.status);
    stored.object = record.GetODJson();
    stored.deviceData = *std::unique_ptr<vxJson::Value>(record.GetDeviceDataJSon());
    return stored;
}
// [end]

/// A configuration file brings a data key of its own: a platform may sum up less than the whole
/// text.
std::unique_ptr<CDEDataBase> configRecord(const CDeviceIdentifier& device, const std::string& file,
                                          const std::string& text) {
    auto record = std::make_unique<CDEDataConfigFile>(device);
    record->SetData(text);
    record->SetDataMD5(CVXNonCryptographicChecksum::GetChecksum(
        reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size())));
    vxJson::Value param;
    param["file"] = file;
    record->SetParam(param);
    return record;
}

std::unique_ptr<CDEDataBase> structuredRecord(CDeviceIdentifier& device,
                                              const std::string& location,
                                              const std::string& frame) {
    auto record = std::make_unique<CDEDataStructureData>(device, DEDataTypeParser);
    record->SetLocation(location);
    record->SetData(frame);
    return record;
}

std::unique_ptr<CDEDataBase> makeRecord(CDeviceIdentifier& device, const std::string& kind,
                                        const std::string& name, const std::string& data) {
    if (kind == "config") return configRecord(device, name, data);
    if (kind == "cmd") return commandRecord(device, name, data);
    if (kind == "structured") return structuredRecord(device, name, data);
    throw example::Failure("KIND \"" + kind + "\" is unknown; give config, cmd or structured");
}

CDeviceIdentifier makeDevice(const std::string& text) {
    try {
        return CDeviceIdentifier(VX128Guid(text), "");
    } catch (const std::invalid_argument&) {
        return CDeviceIdentifier(VX128Guid(), text);
    }
}

long long parseTime(const std::string& text) {
    char* end = nullptr;
    errno = 0;
    const long long time = std::strtoll(text.c_str(), &end, 10);
    if (text.empty() || *end != '\0' || errno != 0)
        throw example::Failure("TIME \"" + text + "\" is no number; give milliseconds since 1970");
    return time;
}

/// The beginning of a payload, fit for a terminal: what is not ASCII is shown as a question mark.
std::string beginning(const std::string& payload) {
    std::string text = payload.substr(0, 48);
    for (char& c : text) c = static_cast<signed char>(c) < 0 ? '?' : c;
    return text;
}

std::string print(Stored stored, const std::string& payload) {
    const std::string shown = beginning(payload);
    const std::string note =
        payload.size() <= 48
            ? ""
            : " (the first 48 of " + std::to_string(payload.size()) + " payload bytes)";
    stored.object["data"] = vxJson::Value(shown.data(), static_cast<int>(shown.size()));
    stored.deviceData["content"] = shown;
    std::ostringstream out;
    out << "meta key     " << stored.metaKey << "\ndata key     " << stored.dataKey << "\n\n"
        << "status view\n"
        << stored.status.toStyledString() << "\n\n"
        << "object view" << note << "\n"
        << stored.object.toStyledString() << "\n\n"
        << "device data view" << note << "\n"
        << stored.deviceData.toStyledString() << "\n";
    return out.str();
}

std::string recordToStore(const example::Arguments& arguments) {
    const std::string data = example::readFile(arguments[3]);
    if (data.size() > INT_MAX)
        throw example::Failure(arguments[3] +
                               ": is 2 GiB or larger; a checksum covers less than that");

    CDeviceIdentifier device = makeDevice(arguments[0]);
    const std::unique_ptr<CDEDataBase> record =
        makeRecord(device, arguments[1], arguments[2], data);
    record->SetTime(arguments.size() > 4 ? parseTime(arguments[4])
                                         : static_cast<long long>(std::time(nullptr)) * 1000);
    std::vector<CDETaskInfo> tasks = {{"nightly-backup", 0, false, ""}};
    record->SetTaskInfo(tasks);
    return print(takeViews(*record), data);
}

}  // namespace

int main(int argc, char** argv) {
    return example::run(argc, argv, usage, 4, 5, recordToStore);
}
