#include "tests/support/SameDocument.h"

#include <cstdint>
#include <cstring>
#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

namespace {

/// Two containers of one kind and size on the way through both documents.
struct OpenPair {
    const rapidjson::Value* left;
    const rapidjson::Value* right;
    rapidjson::SizeType next;

    rapidjson::SizeType Count() const {
        return left->IsArray() ? left->Size() : left->MemberCount();
    }
};

std::string Quoted(const rapidjson::Value& text) {
    constexpr rapidjson::SizeType kShown = 60;
    std::ostringstream output;
    output << '"' << std::hex << std::setfill('0');
    for (rapidjson::SizeType i = 0; i < std::min(text.GetStringLength(), kShown); ++i) {
        const unsigned byte = static_cast<unsigned char>(text.GetString()[i]);
        if (byte < 32 || byte > 126)
            output << "\\x" << std::setw(2) << byte;
        else
            output << text.GetString()[i];
    }
    output << '"' << std::dec;
    if (text.GetStringLength() > kShown) output << " and so on";
    output << " of " << text.GetStringLength() << " bytes";
    return output.str();
}

std::uint64_t BitsOf(double number) {
    std::uint64_t bits;
    std::memcpy(&bits, &number, sizeof bits);
    return bits;
}

std::string NumberText(const rapidjson::Value& number) {
    std::ostringstream output;
    if (number.IsDouble())
        output << "double " << std::setprecision(17) << number.GetDouble() << " bits " << std::hex
               << BitsOf(number.GetDouble());
    else if (number.IsInt64())
        output << "integer " << number.GetInt64();
    else
        output << "integer " << number.GetUint64();
    const char* separator = " with ";
    const auto flag = [&](bool holds, const char* name) {
        if (!holds) return;
        output << separator << name;
        separator = ", ";
    };
    flag(number.IsInt(), "IsInt");
    flag(number.IsUint(), "IsUint");
    flag(number.IsInt64(), "IsInt64");
    flag(number.IsUint64(), "IsUint64");
    flag(number.IsDouble(), "IsDouble");
    return output.str();
}

std::string Described(const rapidjson::Value& value) {
    switch (value.GetType()) {
        case rapidjson::kNullType:
            return "null";
        case rapidjson::kFalseType:
            return "false";
        case rapidjson::kTrueType:
            return "true";
        case rapidjson::kStringType:
            return Quoted(value);
        case rapidjson::kNumberType:
            return NumberText(value);
        case rapidjson::kArrayType:
            return "array of " + std::to_string(value.Size());
        case rapidjson::kObjectType:
            return "object of " + std::to_string(value.MemberCount());
    }
    return "unknown kind";
}

bool SameText(const rapidjson::Value& left, const rapidjson::Value& right) {
    return left.GetStringLength() == right.GetStringLength() &&
           std::memcmp(left.GetString(), right.GetString(), left.GetStringLength()) == 0;
}

bool SameNumber(const rapidjson::Value& left, const rapidjson::Value& right) {
    if (left.IsInt() != right.IsInt() || left.IsUint() != right.IsUint() ||
        left.IsInt64() != right.IsInt64() || left.IsUint64() != right.IsUint64() ||
        left.IsDouble() != right.IsDouble())
        return false;
    if (left.IsDouble()) return BitsOf(left.GetDouble()) == BitsOf(right.GetDouble());
    return left.IsInt64() ? left.GetInt64() == right.GetInt64()
                          : left.GetUint64() == right.GetUint64();
}

/// Compares two values, but not what containers hold.
bool SameAtTop(const rapidjson::Value& left, const rapidjson::Value& right) {
    if (left.GetType() != right.GetType()) return false;
    switch (left.GetType()) {
        case rapidjson::kStringType:
            return SameText(left, right);
        case rapidjson::kNumberType:
            return SameNumber(left, right);
        case rapidjson::kArrayType:
            return left.Size() == right.Size();
        case rapidjson::kObjectType:
            return left.MemberCount() == right.MemberCount();
        default:
            return true;
    }
}

/// Where the element stands that each open container took last.
std::string PathOf(const std::vector<OpenPair>& open) {
    std::string path = "root";
    for (const OpenPair& pair : open) {
        const rapidjson::SizeType at = pair.next - 1;
        path += pair.left->IsArray() ? '[' + std::to_string(at) + ']'
                                     : '{' + Quoted((pair.left->MemberBegin() + at)->name) + '}';
    }
    return path;
}

}  // namespace

testing::AssertionResult SameDocument(const rapidjson::Value& leftRoot,
                                      const rapidjson::Value& rightRoot) {
    std::vector<OpenPair> open;
    const auto differ = [&](const rapidjson::Value& left, const rapidjson::Value& right) {
        return testing::AssertionFailure()
               << PathOf(open) << ": " << Described(left) << " against " << Described(right);
    };
    const rapidjson::Value* left = &leftRoot;
    const rapidjson::Value* right = &rightRoot;
    for (;;) {
        if (!SameAtTop(*left, *right)) return differ(*left, *right);
        if (left->IsArray() || left->IsObject()) open.push_back({left, right, 0});
        while (!open.empty() && open.back().next == open.back().Count()) open.pop_back();
        if (open.empty()) return testing::AssertionSuccess();

        OpenPair& pair = open.back();
        const rapidjson::SizeType at = pair.next++;
        if (pair.left->IsArray()) {
            left = pair.left->Begin() + at;
            right = pair.right->Begin() + at;
            continue;
        }
        const auto leftMember = pair.left->MemberBegin() + at;
        const auto rightMember = pair.right->MemberBegin() + at;
        if (!SameAtTop(leftMember->name, rightMember->name))
            return differ(leftMember->name, rightMember->name) << " as a key";
        left = &leftMember->value;
        right = &rightMember->value;
    }
}
