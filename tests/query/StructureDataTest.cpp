#include <VxUtil/vxJson.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "query/CDEQueryResultStructureData.h"
#include "tests/support/Rows.h"
#include "tests/support/Texts.h"

namespace {

vxJson::Value Holding(const std::string& data) {
    vxJson::Value value;
    value["data"] = vxJson::Value(data.data(), static_cast<int>(data.size()));
    return value;
}

std::string SavedData(const CDEQueryResultStructureData& result) {
    vxJson::Value saved;
    result.SaveToJson(saved);
    return saved["data"].asBinary();
}

// Each load gives the value and the error of rapidjson's own parser with its default flags, in a
// document that held 7, and clears the error of the load before.
TEST(StructureData, LoadsAsParsed) {
    const std::string tokens[] = {"[",  "]",    "{",   "}", ",",  ":",  "\"a\"",  "-1.5e3",
                                  "\r", "true", "nul", "-", "\"", "\\", "\\u00e9"};
    std::vector<std::string> texts = {""};
    // All texts of up to four tokens: those of up to three are continued.
    for (std::size_t i = 0; i < 1 + 15 + 15 * 15 + 15 * 15 * 15; ++i) {
        for (const std::string& token : tokens) texts.push_back(texts[i] + token);
    }
    CDEQueryResultStructureData result;
    const rapidjson::Document& loaded = result.GetData_RO();
    for (const std::string& text : texts) {
        rapidjson::Document parsed;
        parsed.SetInt(7);
        parsed.Parse(text.c_str());
        result.GetData().SetInt(7);
        result.LoadFromJson(Holding(text + std::string("\0]", 2)));
        ASSERT_EQ(loaded.GetParseError(), parsed.GetParseError()) << text;
        ASSERT_EQ(loaded.GetErrorOffset(), parsed.GetErrorOffset()) << text;
        ASSERT_EQ(Text(loaded), Text(parsed)) << text;
    }
}

TEST(StructureData, DepthCostsMemoryOnly) {
    const std::size_t depth = 1000000;
    std::string objects;
    for (std::size_t i = 0; i < depth; ++i) objects += "{\"a\":";
    for (const std::string& text : {std::string(depth, '[') + std::string(depth, ']'),
                                    objects + "1" + std::string(depth, '}')}) {
        CDEQueryResultStructureData result;
        result.LoadFromJson(Holding(text));
        ASSERT_FALSE(result.GetData_RO().HasParseError());
        EXPECT_TRUE(SavedData(result) == text);
    }
}

TEST(StructureData, SavesTheTextUpToANumberThatJsonCannotWrite) {
    CDEQueryResultStructureData result;
    result.GetData().Parse(R"({"a":[1.10,"\u0001"],"b":2})");
    EXPECT_EQ(SavedData(result), R"({"a":[1.1,"\u0001"],"b":2})");
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
    result.GetData()["b"].SetString(bytes.data(), 256, result.GetData().GetAllocator());
    EXPECT_EQ(SavedData(result), Text(result.GetData_RO()));
    result.GetData()["a"][1].SetDouble(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(SavedData(result), R"({"a":[1.1,)");
}

// rapidjson adds the exponent of a number and the count of its decimal places in int.
TEST(StructureData, LoadsLargeNegativeExponentsAsZero) {
    for (const auto& row : Rows(R"(
        0.0000000001e-2147483639         | 0.0
        [-10.55555555555E-02147483648,1] | [-0.0,1]
        ["\\\"1e-2147483648",1e-000000001] | ["\\\"1e-2147483648",0.1]
    )")) {
        CDEQueryResultStructureData result;
        result.LoadFromJson(Holding(row[0]));
        EXPECT_EQ(SavedData(result), row[1]);
    }
    CDEQueryResultStructureData broken;
    broken.LoadFromJson(Holding("[1.00000000001e-2147483639x"));
    EXPECT_EQ(broken.GetData_RO().GetErrorOffset(), 26U);
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
// Strings of which a rapidjson writer reserves 6 times as many bytes, counted in 32 bits, together
// longer than a value can be.
TEST(StructureData, SavesNothingOfATextOf2GiB) {
    const std::string third((std::uint64_t{1} << 32) / 6 + 1, 'a');
    CDEQueryResultStructureData result;
    rapidjson::Document& document = result.GetData();
    document.SetArray();
    for (int i = 0; i < 3; ++i)
        document.PushBack(rapidjson::StringRef(third.data(), third.size()),
                          document.GetAllocator());
    vxJson::Value target = Json(R"({"keep":1})");
    EXPECT_THROW(result.SaveToJson(target), std::length_error);
    EXPECT_EQ(target, Json(R"({"keep":1})"));
}
#endif

}  // namespace
