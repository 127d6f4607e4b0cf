// Builds the record of one payload and prints its keys and its views.
#include <VxUtil/CDeviceIdentifier.h>
#include <VxUtil/CVXNonCryptographicChecksum.h>
#include <VxUtil/VX128Guid.h>
#include <VxUtil/vxJson.h>

#include <charconv>
#include <chrono>
#include <ctime>
#include <memory>
#include <regex>

#ifdef DATAENGINE_TOOL_BSON
#include "bson/Bson.h"
#endif
#include "records/CDEDataConfigFile.h"
#include "records/CDEDataShowCommand.h"
#include "records/CDEDataStructureData.h"
#include "tools/dataengine/Commands.h"

namespace dataengine::tool {
namespace {

constexpr std::size_t kLongestMatched = 64;  // matching takes stack space for each character

/// Returns the device with this GUID; any other text is a host name, or N:type:id for a node.
CDeviceIdentifier MakeDevice(const std::string& text) {
    // 32 digits, give or take one, or the groups of a GUID, in any brackets.
    static const std::regex guidLike(
        "[{(]?(([0-9a-fA-F]-*){31,33}|.{8}-[^-]*-[^-]*-[^-]*-.{12})[)}]?");
    try {
        return CDeviceIdentifier(VX128Guid(text), "");
    } catch (const std::invalid_argument&) {
        if (text.size() < kLongestMatched && std::regex_match(text, guidLike))
            throw UsageError("DEVICE: " + text + " is not a GUID: 8-4-4-4-12 hexadecimal digits");
        return CDeviceIdentifier(VX128Guid(), text);
    }
}

/// Returns the milliseconds since 1970 of a number or of a time in ISO 8601, by default in UTC.
long long ParseTime(const std::string& text) {
    static const std::regex iso(
        "(\\d{4}-\\d\\d-\\d\\d)(?:T(\\d\\d:\\d\\d)(:\\d\\d)?(?:\\.(\\d+))?"
        "(?:Z|([+-])(\\d\\d):(\\d\\d))?)?");
    long long milliseconds = 0;
    const char* const end = text.data() + text.size();
    if (std::from_chars(text.data(), end, milliseconds).ptr == end) return milliseconds;
    std::smatch parts;
    std::tm time = {};
    char again[sizeof "2026-02-28T12:30:00"] = "";
    if (text.size() < kLongestMatched) std::regex_match(text, parts, iso);
    const auto part = [&](std::size_t i, const char* otherwise) {
        return parts[i].matched ? parts[i].str() : otherwise;
    };
    // timegm turns 30 February into 2 March.
    const std::string local = part(1, "") + 'T' + part(2, "00:00") + part(3, ":00");
    strptime(local.c_str(), "%Y-%m-%dT%H:%M:%S", &time);
    const long long seconds = timegm(&time);
    std::strftime(again, sizeof again, "%Y-%m-%dT%H:%M:%S", &time);
    if (again != local)
        throw UsageError("--time: " + text +
                         " is neither milliseconds nor a time as 2026-02-28T12:30:00Z");
    const long long minutes = 60LL * std::stoi(part(6, "0")) + std::stoi(part(7, "0"));
    return (seconds - (part(5, "+") == "+" ? 60 : -60) * minutes) * 1000 +
           std::stoi((part(4, "") + "000").substr(0, 3));
}

std::string ChecksumOf(const std::string& bytes) {
    return CVXNonCryptographicChecksum::GetChecksum(
        reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
}

std::unique_ptr<CDEDataBase> MakeConfig(const CDeviceIdentifier& device, const Options& options,
                                        const std::string& payload) {
    if (!options.location.empty())
        throw UsageError("a configuration has no NAME in the store; give an empty one: ''");
    if (!device.GetDeviceId().IsValid())
        PrintError(
            "warning: without a GUID, the configurations of all devices have the same meta key");
    auto record = std::make_unique<CDEDataConfigFile>(device);
    record->SetDataMD5(ChecksumOf(payload));
    return record;
}

std::unique_ptr<CDEDataBase> MakeRecord(const Options& options, const std::string& payload) {
    CDeviceIdentifier device = MakeDevice(options.device);
    const EnumDEDataType type = CDEDataBase::TypeStr2Int(options.type);
    if (type == DEDataTypeConfig) return MakeConfig(device, options, payload);
    if (type == DEDataTypeCmd) {
        auto record = std::make_unique<CDEDataShowCommand>(device);
        record->SetCommand(options.location);
        return record;
    }
    auto record = std::make_unique<CDEDataStructureData>(device, type);
    record->SetLocation(options.location);
    if (type == DEDataTypeSysTable || type == DEDataTypeNctTable)
        record->SetDataMD5CA(ChecksumOf(payload));
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
    if (format == "bson") return bson::Encode(value);
#else
    if (format == "bson") throw UsageError("this build has no BSON; use --format json");
#endif
    return value.toStyledString() + "\n";
}

}  // namespace

void Record(const Options& options, Output& output) {
    using std::chrono::milliseconds;
    const std::string payload = ReadFile(options.input);
    const auto record = MakeRecord(options, payload);
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    record->SetTime(options.time.empty() ? std::chrono::duration_cast<milliseconds>(now).count()
                                         : ParseTime(options.time));
    record->SetData(payload);
    if (options.format == "bson") output.content = Content::kBinary;
    for (const std::string& view : options.views) {
        try {
            output.text += Format(ViewOf(*record, view), options.format);
        } catch (const vxJson::Error& error) {
            throw Failure(options.input, view + " view: " + error.what());
        }
    }
}

}  // namespace dataengine::tool
