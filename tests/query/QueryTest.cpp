#include <VxUtil/vxJson.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <tuple>

#include "query/CDEDeviceDataQueryInfo.h"
#include "query/CDEQueryResultMetaDataOnly.h"
#include "query/CDEStructureQueryInfo.h"
#include "tests/support/Rows.h"
#include "tests/support/Texts.h"

namespace {

using Info = CDEDeviceDataQueryInfo;
using Meta = CDEQueryResultMetaDataOnly;
using Key = std::tuple<std::string, std::string, std::string, vxJson::Value>;

template <typename T>
T Build(int day, const Key& key) {
    vxJson::Value document;
    document["day"] = day;
    std::tie(document["devId"], document["type"], document["name"], document["param"]) = key;
    T object;
    object.LoadFromJson(document);
    return object;
}

// The earlier day is less, and a later one leaves the answer to the other keys. Few texts, so that
// ties are common: prefixes of each other, and a byte that is negative as char.
TEST(Query, OrdersByDeviceTypeNameAndParamAndByDayOnOneSide) {
    const std::string texts[] = {"", "ab", "abc", "abd", "\x80", "B"};
    std::mt19937 random(4);
    const auto text = [&] { return texts[random() % 6]; };
    const auto key = [&] {
        vxJson::Value param;
        if (random() % 2) param["p"] = text();
        return Key(text(), text(), text(), param);
    };
    for (int i = 0; i < 20000; ++i) {
        const Key a = key();
        // Half of the time one field apart at most.
        Key b = random() % 2 ? key() : a;
        if (random() % 2) std::get<2>(b) = "abd";
        const int day = static_cast<int>(random() % 3) - 1;
        ASSERT_EQ(Build<Info>(day, a) < Build<Info>(0, b), a < b);
        ASSERT_EQ(Build<Meta>(day, a) < Build<Meta>(0, b), day < 0 || a < b) << day;
    }
}

TEST(Query, TheIdentityLeavesOutAnEmptyName) {
    const auto identity = [](auto object, const std::string& loaded) {
        vxJson::Value out = Json(R"({"name":"there"})");
        object.LoadFromJson(Json(loaded));
        EXPECT_TRUE(object.GetQueryInfo(out));
        return out.toString(false);
    };
    for (const auto& row : Rows(R"(
        {"day":3,"devId":"d","type":"t"}            | "devId":"d","name":"there","param":null,"type":"t"}
        {"day":3,"devId":"d","type":"t","name":"n"} | "devId":"d","name":"n","param":null,"type":"t"}
    )")) {
        EXPECT_EQ(identity(Info(), row[0]), "{" + row[1]);
        EXPECT_EQ(identity(Meta(), row[0]), "{\"day\":3," + row[1]);
    }
}

TEST(Query, PrintsFiveLines) {
    const vxJson::Value param = Json(R"({"p":[1,2]})");
    EXPECT_EQ(Build<Meta>(-3, Key("d", "t", "", param)).toPrintString(),
              "day=-3\r\ndevId=d\r\ntype=t\r\nname=\r\nparam=" + param.toStyledString() + "\r\n");
}

TEST(Query, MatchesDeviceTypes) {
    for (const auto& row : Rows(R"(
        [0]    | matches 5 | matches 0
        [7,0]  | matches 5 | matches 0
        [7,5]  | matches 5 | not 0
        [7,-5] | not 5     | not 0
        []     | not 5     | not 0
    )")) {
        CDEStructureQueryInfo query;
        query.LoadFromJson(Json("{\"devTypes\":" + row[0] + "}"));
        EXPECT_EQ(query.IsDevTypeMatch(5), row[1] == "matches 5") << row[0];
        EXPECT_EQ(query.IsDevTypeMatch(0), row[2] == "matches 0") << row[0];
    }
}

TEST(Query, DeviceTypesAddToWhatIsThere) {
    CDEStructureQueryInfo query;
    query.LoadFromJson(Json(R"({"devTypes":[4294967301,-1]})"));
    query.LoadFromJson(Json(R"({"devTypes":{"a":1}})"));
    // The elements before one that does not convert have been read.
    EXPECT_THROW(query.LoadFromJson(Json(R"({"devTypes":[4,"x",5]})")), vxJson::Error);
    vxJson::Value target = Json(R"({"devTypes":["there"]})");
    query.SaveToJson(target);
    EXPECT_EQ(target["devTypes"].toString(false), R"(["there",5,-1,4])");
}

}  // namespace
