#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <map>

namespace {

TEST(Printers, ShowTextsWhereAComparisonFails) {
    vxJson::Value value = Json(R"({"b":[1,"x"],"a":null})");
    value["time"] = vxJson::Value(5ULL, false);
    const std::string text = R"({"a":null,"b":[1,"x"],"time":{"$date":{"$numberLong":"5"}}})";
    rapidjson::Document document;
    document.Parse("[1,{}]");
    const rapidjson::Value& root = document;
    const std::pair<std::string, std::string> rows[] = {
        {testing::PrintToString(value), text},
        {testing::PrintToString(std::vector<vxJson::Value>{value, 1}), "{ " + text + ", 1 }"},
        {testing::PrintToString(root), "[1,{}]"},
        {testing::PrintToString(VX128Guid("00112233-4455-6677-8899-aabbccddeeff")),
         "00112233-4455-6677-8899-aabbccddeeff"},
        {testing::PrintToString(std::map<DDKey, int>{{DDKey("p", "t.c"), 3}}),
         R"({ (parser "p", variable "t.c", 3) })"},
    };
    for (const auto& [shown, expected] : rows) EXPECT_EQ(shown, expected);
}

}  // namespace
