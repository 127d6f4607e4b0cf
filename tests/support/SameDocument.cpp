#include "tests/support/SameDocument.h"

#include <cstdio>
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

std::string NumberText(const rapidjson::Value& number) {
    char digits[40];
    if (number.IsDouble()) {
        std::snprintf(digits, sizeof digits, "double %.17g", number.GetDouble());
        return digits;
    }
    const std::string text =
        number.IsInt64() ? std::to_string(number.GetInt64()) : std::to_string(number.GetUint64());
    return "integer " + text + (number.IsInt() ? ", Int" : "") + (number.IsUint() ? ", Uint" : "") +
           (number.IsInt64() ? ", Int64" : "") + (number.IsUint64() ? ", Uint64" : "");
}

/// All that can be told of a value, but not what a container holds.
std::string Described(const rapidjson::Value& value) {
    if (value.IsNull()) return "null";
    if (value.IsBool()) return value.GetBool() ? "true" : "false";
    if (value.IsNumber()) return NumberText(value);
    if (value.IsString())
        return "string " + std::string(value.GetString(), value.GetStringLength());
    if (value.IsArray()) return "array of " + std::to_string(value.Size());
    return "object of " + std::to_string(value.MemberCount());
}

}  // namespace

testing::AssertionResult SameDocument(const rapidjson::Value& leftRoot,
                                      const rapidjson::Value& rightRoot) {
    std::vector<OpenPair> open;
    const auto same = [&](const rapidjson::Value& left, const rapidjson::Value& right) {
        const std::string leftText = Described(left), rightText = Described(right);
        if (leftText == rightText) return testing::AssertionSuccess();
        std::string path = "root";
        for (const OpenPair& pair : open) path += '/' + std::to_string(pair.next - 1);
        return testing::AssertionFailure() << path << ": " << testing::PrintToString(leftText)
                                           << " against " << testing::PrintToString(rightText);
    };
    const rapidjson::Value* left = &leftRoot;
    const rapidjson::Value* right = &rightRoot;
    for (;;) {
        if (const auto result = same(*left, *right); !result) return result;
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
        if (const auto result = same(leftMember->name, rightMember->name); !result)
            return testing::AssertionResult(result) << " as a key";
        left = &leftMember->value;
        right = &rightMember->value;
    }
}
