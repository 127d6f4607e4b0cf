// Builds the record of one payload and prints its keys and its views.
#include <VxUtil/CDeviceIdentifier.h>
#include <VxUtil/CVXNonCryptographicChecksum.h>
#include <VxUtil/VX128Guid.h>
#include <VxUtil/vxJson.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <ctime>
#include <memory>
#include <tuple>

#ifdef DATAENGINE_TOOL_BSON
#include "bson/Bson.h"
#endif
#include "records/CDEDataConfigFile.h"
#include "records/CDEDataShowCommand.h"
#include "records/CDEDataStructureData.h"
#include "tools/dataengine/Commands.h"
#include "tools/dataengine/Failure.h"
#include "tools/dataengine/Files.h"

namespace dataengine::tool {
namespace {

/// Returns whether `text` looks like a GUID: 32 hexadecimal digits, give or take one, or the groups
/// of one, in any brackets.
bool LooksLikeGuid(std::string text) {
    if (text.find_first_of("{(") == 0) text = text.substr(1);
    if (!text.empty() && (text.back() == '}' || text.back() == ')')) text.pop_back();
    const auto hyphens = std::count(text.begin(), text.end(), '-');
    const bool isHexadecimal = text.find_first_not_of("0123456789abcdefABCDEF-") == text.npos;
    const std::size_t digits = text.size() - static_cast<std::size_t>(hyphens);
    return (isHexadecimal && digits >= 31 && digits <= 33) ||
           (hyphens == 4 && text.size() == 36 && text[8] == '-' && text[23] == '-');
}

/// Returns the device with this GUID; any other text is a host name, or N:type:id for a node.
CDeviceIdentifier MakeDevice(const std::string& text) {
    try {
        return CDeviceIdentifier(VX128Guid(text), "");
    } catch (const std::invalid_argument&) {
        if (LooksLikeGuid(text))
            throw UsageError("DEVICE: " + text + " is not a GUID: 8-4-4-4-12 hexadecimal digits");
        return CDeviceIdentifier(VX128Guid(), text);
    }
}

/// Reads `count` digits, after the character `before` if it is not 0.
bool TakeDigits(std::string_view& text, char before, std::size_t count, int& number) {
    if (before != 0 && (text.empty() || text[0] != before)) return false;
    if (before != 0) text.remove_prefix(1);
    const std::string_view digits = text.substr(0, count);
    if (digits.size() != count || digits.find_first_not_of("0123456789") != digits.npos)
        return false;
    number = std::stoi(std::string(digits));
    text.remove_prefix(count);
    return true;
}

/// Reads the rest of a time in ISO 8601 after its minutes: seconds, their fraction and the zone.
bool TakeEnd(std::string_view& text, std::tm& fields, long long& milliseconds) {
    if (!text.empty() && text[0] == ':' && !TakeDigits(text, ':', 2, fields.tm_sec)) return false;
    if (!text.empty() && text[0] == '.') {
        const std::size_t end = std::min(text.find_first_not_of("0123456789", 1), text.size());
        if (end == 1) return false;
        milliseconds = std::stoi((std::string(text.substr(1, end - 1)) + "00").substr(0, 3));
        text.remove_prefix(end);
    }
    int hours = 0, minutes = 0;
    const char sign = text.empty() ? 'Z' : text[0];
    if (sign == 'Z') {
        text.remove_prefix(text.empty() ? 0 : 1);
    } else if (!TakeDigits(text, sign, 2, hours) || !TakeDigits(text, ':', 2, minutes) ||
               (sign != '+' && sign != '-')) {
        return false;
    }
    milliseconds -= (sign == '-' ? -1 : 1) * (hours * 60LL + minutes) * 60000;
    return text.empty();
}

/// Returns the milliseconds since 1970 of a number or of a time in ISO 8601, by default in UTC.
long long ParseTime(std::string_view text) {
    const std::string given(text);
    long long milliseconds = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, milliseconds);
    if (result.ec == std::errc() && result.ptr == end) return milliseconds;
    milliseconds = 0;
    std::tm fields = {};
    int month = 0;
    const bool hasDate = TakeDigits(text, 0, 4, fields.tm_year) &&
                         TakeDigits(text, '-', 2, month) &&
                         TakeDigits(text, '-', 2, fields.tm_mday);
    const bool isTime = hasDate && (text.empty() || (TakeDigits(text, 'T', 2, fields.tm_hour) &&
                                                     TakeDigits(text, ':', 2, fields.tm_min) &&
                                                     TakeEnd(text, fields, milliseconds)));
    fields.tm_year -= 1900;
    fields.tm_mon = month - 1;
    std::tm valid = fields;  // timegm turns 30 February into 2 March
    const long long seconds = timegm(&valid);
    const auto key = [](const std::tm& t) {
        return std::tie(t.tm_mon, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec);
    };
    if (!isTime || key(valid) != key(fields))
        throw UsageError("--time: " + given +
                         " is neither milliseconds nor a time as 2026-02-28T12:30:00Z");
    return seconds * 1000 + milliseconds;
}

std::string ChecksumOf(const std::string& bytes) {
    return CVXNonCryptographicChecksum::GetChecksum(
        reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
}

std::unique_ptr<CDEDataBase> MakeConfig(const CDeviceIdentifier& device, const std::string& name,
                                        const std::string& payload) {
    if (!name.empty())
        throw UsageError("a configuration has no NAME in the store; give an empty one: ''");
    if (!device.GetDeviceId().IsValid())
        PrintError(
            "warning: without a GUID, the configurations of all devices have the same meta key");
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

std::unique_ptr<CDEDataBase> MakeRecord(const Options& options, const std::string& payload) {
    CDeviceIdentifier device = MakeDevice(options.device);
    const EnumDEDataType type = CDEDataBase::TypeStr2Int(options.type);
    auto record = type == DEDataTypeConfig ? MakeConfig(device, options.location, payload)
                  : type == DEDataTypeCmd  ? MakeCommand(device, options.location)
                                          : MakeStructured(device, type, options.location, payload);
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    record->SetTime(options.time.empty()
                        ? std::chrono::duration_cast<std::chrono::milliseconds>(now).count()
                        : ParseTime(options.time));
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
    if (format == "bson") return bson::Encode(value);
#else
    if (format == "bson") throw UsageError("this build has no BSON; use --format json");
#endif
    return value.toStyledString() + "\n";
}

}  // namespace

int Record(const Options& options) {
    const std::string& path = options.input;
    CheckPaths({path}, {options.output});
    const auto record = MakeRecord(options, ReadFile(path));
    std::string output;
    for (const std::string& view : options.views) {
        try {
            output += Format(ViewOf(*record, view), options.format);
        } catch (const vxJson::Error& error) {
            throw Failure(path, view + " view: " + error.what());
        }
    }
    WriteFile(options.output, output, options.format == "bson" ? Content::kBinary : Content::kJson);
    return 0;
}

}  // namespace dataengine::tool
