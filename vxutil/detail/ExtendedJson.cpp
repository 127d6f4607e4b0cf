#include "vxutil/detail/ExtendedJson.h"

#include <VxUtil/TimerHelper.h>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <limits>
#include <string>
#include <system_error>

#include "vxutil/detail/Base64.h"
#include "vxutil/detail/Hex.h"

namespace vxJson::detail {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsHexDigit(char c) {
    return vxutil::HexValue(c) >= 0;
}

/// Returns whether `text` has the layout of `pattern`, in which 0 is a digit, f a hexadecimal digit
/// and + a sign.
bool Matches(std::string_view text, std::string_view pattern) {
    return std::equal(text.begin(), text.end(), pattern.begin(), pattern.end(),
                      [](char c, char kind) {
                          if (kind == '0') return IsDigit(c);
                          if (kind == 'f') return IsHexDigit(c);
                          return c == kind || (kind == '+' && c == '-');
                      });
}

/// Returns the value of decimal digits, which must fit in an int.
int Number(std::string_view digits) {
    int number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

/// Returns the bytes of a string; empty for any other kind.
std::string_view TextOf(const Value& value) {
    return value.isString() ? std::string_view(value.asBinary()) : std::string_view();
}

// Accepts only the text that an integer is printed as: no leading zeros, no "+", no "-0".
template <typename Integer>
bool ReadInteger(const Value& content, Value& value) {
    const std::string_view text = TextOf(content);
    Integer number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    if (std::to_string(number) != text) return false;
    value = static_cast<long long>(number);
    return true;
}

bool IsJsonNumber(std::string_view text) {
    const auto isDigitAt = [text](std::size_t i) { return i < text.size() && IsDigit(text[i]); };
    const std::size_t first = text.substr(0, 1) == "-" ? 1 : 0;
    if (!isDigitAt(first) || (text[first] == '0' && isDigitAt(first + 1))) return false;
    const std::size_t point = text.find('.');
    return point == std::string_view::npos || isDigitAt(point + 1);
}

bool ReadReal(const Value& content, Value& value) {
    const std::string_view text = TextOf(content);
    double number = std::numeric_limits<double>::infinity();
    if (text == "NaN") {
        number = std::numeric_limits<double>::quiet_NaN();
    } else if (text == "-Infinity") {
        number = -number;
    } else if (text != "Infinity" && !(IsJsonNumber(text) && ReadDouble(text, number))) {
        return false;
    }
    value = number;
    return true;
}

bool ReadBase64(const Value& base64, const Value& subType, Value& value) {
    const std::string_view digits = TextOf(subType);
    std::string bytes;
    if (!base64.isString() || !(Matches(digits, "f") || Matches(digits, "ff")) ||
        !DecodeBase64(base64.asBinary(), bytes))
        return false;
    value = Value(bytes, binaryKind);
    return true;
}

bool ReadBinary(const Value& content, Value& value) {
    return content.isObject() && content.size() == 2 &&
           ReadBase64(content["base64"], content["subType"], value);
}

bool ReadUuid(const Value& content, Value& value) {
    const std::string_view text = TextOf(content);
    if (!Matches(text, "ffffffff-ffff-ffff-ffff-ffffffffffff")) return false;
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); i += 2) {
        if (text[i] == '-') ++i;
        bytes += static_cast<char>(vxutil::HexValue(text[i]) * 16 + vxutil::HexValue(text[i + 1]));
    }
    value = Value(bytes, binaryKind);
    return true;
}

bool ReadObjectId(const Value& content, Value& value) {
    if (!Matches(TextOf(content), "ffffffffffffffffffffffff")) return false;
    value = content;
    return true;
}

/// Returns the days from 1970-01-01 to a date of the Gregorian calendar.
long long DaysSinceEpoch(int year, int month, int day) {
    // Years begin in March here, so that a leap day is the last day of its year. Each five months
    // from March on have 153 days.
    const int years = month > 2 ? year : year - 1;
    const int months = month > 2 ? month - 3 : month + 9;
    const int daysBefore = 365 * years + years / 4 - years / 100 + years / 400;
    return daysBefore + (153 * months + 2) / 5 + day - 1 - 719468;
}

/// Reads the end of an ISO 8601 time: "Z" or the offset from UTC in hours and minutes.
bool ReadZone(std::string_view text, int& minutes) {
    minutes = 0;
    if (text == "Z") return true;
    if (!Matches(text, "+00:00") && !Matches(text, "+0000") && !Matches(text, "+00")) return false;
    const int hours = Number(text.substr(1, 2));
    const int rest = text.size() > 3 ? Number(text.substr(text.size() - 2)) : 0;
    minutes = (60 * hours + rest) * (text[0] == '-' ? -1 : 1);
    return hours < 24 && rest < 60;
}

/// Reads an ISO 8601 time such as 2025-03-03T06:12:41.5+01:00.
bool ReadIsoTime(std::string_view text, long long& milliseconds) {
    constexpr std::string_view kDateAndTime = "0000-00-00T00:00:00";
    if (!Matches(text.substr(0, kDateAndTime.size()), kDateAndTime)) return false;
    const int year = Number(text.substr(0, 4));
    const int month = Number(text.substr(5, 2));
    const int day = Number(text.substr(8, 2));
    const int hour = Number(text.substr(11, 2));
    const int minute = Number(text.substr(14, 2));
    const int second = Number(text.substr(17, 2));
    const long long days = DaysSinceEpoch(year, month, day);
    const long long seconds = ((days * 24 + hour) * 60 + minute) * 60 + second;
    // A date or time that does not exist counts as a later one, which reads otherwise.
    const std::tm existing = TimerHelper::Time2UTCTm(seconds * 1000);
    if (year < 1 || existing.tm_mon + 1 != month || existing.tm_mday != day ||
        existing.tm_hour != hour || existing.tm_min != minute || existing.tm_sec != second)
        return false;
    text.remove_prefix(kDateAndTime.size());

    int fraction = 0;
    if (text.substr(0, 1) == ".") {
        const auto* const end = std::find_if_not(text.begin() + 1, text.end(), IsDigit);
        const auto digits = static_cast<std::size_t>(end - text.begin()) - 1;
        if (digits < 1 || digits > 3) return false;
        fraction = Number(std::string(text.substr(1, digits)).append(3 - digits, '0'));
        text.remove_prefix(1 + digits);
    }
    int offset = 0;
    if (!ReadZone(text, offset)) return false;
    milliseconds = (seconds - 60LL * offset) * 1000 + fraction;
    return true;
}

bool ReadDate(const Value& content, Value& value) {
    Value time = content;
    if (content.isObject()) {
        if (content.size() != 1 || !ReadInteger<long long>(content["$numberLong"], time))
            return false;
    } else if (content.isString()) {
        long long milliseconds = 0;
        if (!ReadIsoTime(TextOf(content), milliseconds)) return false;
        time = milliseconds;
    }
    if (time.type() != integerKind || Value(std::numeric_limits<long long>::max()) < time)
        return false;
    value = Value(static_cast<unsigned long long>(time.asInt64()), false);
    return true;
}

/// Returns whether a nonzero JSON number outside the range of a double is too large, rather than
/// too small.
bool IsLarge(std::string_view text) {
    const std::size_t e = std::min(text.find_first_of("eE"), text.size());
    const std::string_view mantissa = text.substr(0, e);
    const auto first = static_cast<long long>(mantissa.find_first_of("123456789"));
    const auto point = static_cast<long long>(std::min(mantissa.find('.'), mantissa.size()));
    if (e == text.size()) return point > first;
    std::string_view digits = text.substr(e + 1);
    if (digits[0] == '+') digits.remove_prefix(1);
    long long exponent = 0;
    const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), exponent).ec;
    return parsed == std::errc() ? exponent > first - point : digits[0] != '-';
}

struct Form {
    std::string_view key;
    bool (*read)(const Value& content, Value& value);
};

constexpr Form kForms[] = {
    {"$binary", ReadBinary},
    {"$date", ReadDate},
    {"$numberDouble", ReadReal},
    {"$numberInt", ReadInteger<int>},
    {"$numberLong", ReadInteger<long long>},
    {"$oid", ReadObjectId},
    {"$uuid", ReadUuid},
};

const Form* FindForm(std::string_view key) noexcept {
    if (key.empty() || key[0] != '$') return nullptr;
    const auto* const found = std::find_if(std::begin(kForms), std::end(kForms),
                                           [key](const Form& form) { return form.key == key; });
    return found == std::end(kForms) ? nullptr : found;
}

}  // namespace

bool IsFormKey(std::string_view key) noexcept {
    return FindForm(key) != nullptr;
}

void ReadForm(Value& object) {
    const Value& form = object;
    Value value;
    bool isRead = false;
    if (form.size() == 1) {
        const auto member = form.begin();
        const Form* const found = FindForm(member.key());
        isRead = found != nullptr && found->read(*member, value);
    } else if (form.size() == 2 && form.isMember("$type")) {
        isRead = ReadBase64(form["$binary"], form["$type"], value);
    }
    if (isRead) object = std::move(value);
}

bool ReadDouble(std::string_view text, double& number) {
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    if (result.ptr != end) return false;
    if (result.ec == std::errc()) return true;
    number = text[0] == '-' ? -0.0 : 0.0;
    return !IsLarge(text);
}

}  // namespace vxJson::detail
