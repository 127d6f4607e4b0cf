#include <gtest/gtest.h>

#include "tests/structure/Decode.h"
#include "tests/support/Rows.h"

namespace {

TEST(Value, EqualsItsParsedText) {
    for (const auto& row : RowsOf(TEST_DATA "/values.txt")) {
        for (const std::string& after : {std::string(), std::string(40, '\xc0')}) {
            if (!after.empty() && row[2] == "insufficient_bytes") continue;
            rapidjson::Document document;
            const std::string ending = DecodeLeaf(Hex(row[1]) + after, document);
            EXPECT_EQ(ending == "true" ? Text(document[0]["value"]) : ending, row[2])
                << row[0] << ": " << row[1];
        }
    }
}

TEST(Value, IntegersHaveTheFlagsOfEveryTypeThatHoldsThem) {
    const struct {
        const char* packed;
        const char* types;  // Int, Uint, Int64, Uint64
    } rows[] = {{"00", "iuIU"},
                {"d0 00", "iuIU"},
                {"ce 7f ff ff ff", "iuIU"},
                {"ce 80 00 00 00", "uIU"},
                {"ce ff ff ff ff", "uIU"},
                {"d3 00 00 00 00 80 00 00 00", "uIU"},
                {"cf 00 00 00 01 00 00 00 00", "IU"},
                {"cf 7f ff ff ff ff ff ff ff", "IU"},
                {"cf 80 00 00 00 00 00 00 00", "U"},
                {"ff", "iI"},
                {"d2 80 00 00 00", "iI"},
                {"d3 ff ff ff ff 7f ff ff ff", "I"},
                {"d3 80 00 00 00 00 00 00 00", "I"}};
    for (const auto& row : rows) {
        rapidjson::Document document;
        ASSERT_EQ(DecodeLeaf(Hex(row.packed), document), "true");
        const rapidjson::Value& value = document[0]["value"];
        EXPECT_EQ(std::string(value.IsInt() ? "i" : "") + (value.IsUint() ? "u" : "") +
                      (value.IsInt64() ? "I" : "") + (value.IsUint64() ? "U" : ""),
                  row.types)
            << row.packed;
    }
}

}  // namespace
