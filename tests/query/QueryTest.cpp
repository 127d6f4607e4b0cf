#include <gtest/gtest.h>

#include "query/CDEDeviceDataQueryInfo.h"
#include "query/CDEQueryResultMetaDataOnly.h"
#include "query/CDEStructureQueryInfo.h"
#include "tests/support/Rows.h"
#include "tests/support/Texts.h"

namespace {

using Info = CDEDeviceDataQueryInfo;
using Meta = CDEQueryResultMetaDataOnly;

template <typename T>
T Loaded(const std::string& text, int day = 0) {
    vxJson::Value document = Json(text);
    document["day"] = day;
    T object;
    object.LoadFromJson(document);
    return object;
}

// The earlier day is less; a later one leaves the answer to the other keys.
TEST(Query, OrdersByDeviceTypeNameAndParamAndByDayOnOneSide) {
    const auto ascending = RowsOf(TEST_DATA "/ascending.txt");
    for (std::size_t i = 0; i < ascending.size(); ++i) {
        for (std::size_t j = 0; j < ascending.size(); ++j) {
            const std::string& a = ascending[i][0];
            const std::string& b = ascending[j][0];
            ASSERT_EQ(Loaded<Info>(a) < Loaded<Info>(b), i < j) << a << b;
            for (const int day : {-1, 0, 1}) {
                ASSERT_EQ(Loaded<Meta>(a, day) < Loaded<Meta>(b), day < 0 || i < j)
                    << a << b << day;
            }
        }
    }
}

TEST(Query, TheIdentityLeavesOutAnEmptyName) {
    const auto identity = [](const auto& object) {
        vxJson::Value out = Json(R"({"name":"old"})");
        EXPECT_TRUE(object.GetQueryInfo(out));
        return out;
    };
    for (const auto& row : Rows(R"(
        {"devId":"d","type":"t"}            | {"devId":"d","name":"old","param":null,"type":"t"}
        {"devId":"d","type":"t","name":"n"} | {"devId":"d","name":"n","param":null,"type":"t"}
    )")) {
        vxJson::Value expected = Json(row[1]);
        EXPECT_EQ(identity(Loaded<Info>(row[0])), expected);
        expected["day"] = 3;
        EXPECT_EQ(identity(Loaded<Meta>(row[0], 3)), expected);
    }
}

TEST(Query, PrintsFiveLines) {
    const auto meta = Loaded<Meta>(R"({"devId":"d","type":"t","param":{"p":[1,2]}})", -3);
    EXPECT_EQ(meta.toPrintString(), "day=-3\r\ndevId=d\r\ntype=t\r\nname=\r\nparam=" +
                                        meta.GetParam().toStyledString() + "\r\n");
}

TEST(Query, MatchesDeviceTypes) {
    for (const auto& row : Rows(R"(
        [0]    | matches 5 | matches 0
        [7,0]  | matches 5 | matches 0
        [7,5]  | matches 5 | not 0
        [7,-5] | not 5     | not 0
        []     | not 5     | not 0
    )")) {
        const auto query = Loaded<CDEStructureQueryInfo>("{\"devTypes\":" + row[0] + "}");
        EXPECT_EQ(query.IsDevTypeMatch(5), row[1] == "matches 5") << row[0];
        EXPECT_EQ(query.IsDevTypeMatch(0), row[2] == "matches 0") << row[0];
    }
}

TEST(Query, DeviceTypesAreAddedAsTheirLow32Bits) {
    auto query = Loaded<CDEStructureQueryInfo>(R"({"devTypes":[4294967301,-1]})");
    // The elements before one that does not convert are added.
    EXPECT_THROW(query.LoadFromJson(Json(R"({"devTypes":[4,"x",5]})")), vxJson::Error);
    query.LoadFromJson(Json(R"({"devTypes":{"a":6}})"));
    vxJson::Value target = Json(R"({"devTypes":["old"]})");
    query.SaveToJson(target);
    EXPECT_EQ(target["devTypes"], Json(R"(["old",5,-1,4])"));
}

}  // namespace
