#include "tests/support/SameDocument.h"

#include <cstddef>
#include <cstdio>
#include <string>

namespace {

/// Describes all of a value except the elements of a container.
std::string Described(const rapidjson::Value& value) {
    if (value.IsNull()) return "null";
    if (value.IsBool()) return value.GetBool() ? "true" : "false";
    if (value.IsString())
        return "string " + std::string(value.GetString(), value.GetStringLength() + std::size_t{1});
    if (value.IsArray()) return "array of " + std::to_string(value.Size());
    if (value.IsObject()) return "object of " + std::to_string(value.MemberCount());
    char digits[40];
    std::snprintf(digits, sizeof digits, "double %.17g", value.GetDouble());
    if (value.IsDouble()) return digits;
    return "integer " +
           (value.IsInt64() ? std::to_string(value.GetInt64())
                            : std::to_string(value.GetUint64())) +
           (value.IsInt() ? ", Int" : "") + (value.IsUint() ? ", Uint" : "") +
           (value.IsInt64() ? ", Int64" : "") + (value.IsUint64() ? ", Uint64" : "");
}

}  // namespace

testing::AssertionResult SameDocument(const rapidjson::Value& left, const rapidjson::Value& right) {
    const std::string leftText = Described(left), rightText = Described(right);
    if (leftText != rightText) {
        return testing::AssertionFailure() << testing::PrintToString(leftText) << " against "
                                           << testing::PrintToString(rightText);
    }
    auto same = testing::AssertionSuccess();
    for (rapidjson::SizeType i = 0; left.IsArray() && i < left.Size() && same; ++i) {
        same = SameDocument(left[i], right[i]);
        if (!same) same << ", in element " << i;
    }
    for (rapidjson::SizeType i = 0; left.IsObject() && i < left.MemberCount() && same; ++i) {
        const auto& leftMember = left.MemberBegin()[i];
        const auto& rightMember = right.MemberBegin()[i];
        same = SameDocument(leftMember.name, rightMember.name);
        if (same) same = SameDocument(leftMember.value, rightMember.value);
        if (!same) same << ", in member " << i;
    }
    return same;
}
