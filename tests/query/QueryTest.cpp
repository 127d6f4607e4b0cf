#include <VxUtil/vxJson.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "query/CDEDeviceDataQueryInfo.h"
#include "query/CDEQueryResultMetaDataOnly.h"
#include "query/CDEStructureQueryInfo.h"
#include "tests/support/Texts.h"

namespace {

using Key = std::tuple<std::string, std::string, std::string, vxJson::Value>;

// Few texts, so that ties are common: prefixes of each other, and a byte that is negative as char.
Key RandomKey(std::mt19937& random) {
    static const std::vector<std::string> texts = {"", "ab", "abc", "abd", "\x80", "B"};
    const auto text = [&] { return texts[random() % texts.size()]; };
    vxJson::Value param;
    if (random() % 2) param["p"] = text();
    return Key(text(), text(), text(), param);
}

template <typename T>
T Build(const Key& key) {
    T object;
    object.SetDeviceId(std::get<0>(key));
    object.SetType(std::get<1>(key));
    object.SetName(std::get<2>(key));
    object.SetParam(std::get<3>(key));
    return object;
}

CDEQueryResultMetaDataOnly Build(int day, const Key& key) {
    auto object = Build<CDEQueryResultMetaDataOnly>(key);
    object.SetDay(day);
    return object;
}

TEST(Query, OrdersByDeviceTypeNameAndParam) {
    std::mt19937 random(4);
    for (int i = 0; i < 20000; ++i) {
        const Key a = RandomKey(random);
        // Half of the time one field apart at most.
        Key b = random() % 2 ? RandomKey(random) : a;
        if (random() % 2) std::get<2>(b) = "abd";
        const bool less = a < b;
        ASSERT_EQ(Build<CDEDeviceDataQueryInfo>(a) < Build<CDEDeviceDataQueryInfo>(b), less);
        ASSERT_EQ(Build(7, a) < Build(7, b), less);
    }
}

// The earlier day is less, and a later one leaves the answer to the other keys.
TEST(Query, OrdersByDayOnOneSide) {
    const Key a("a", "t", "n", vxJson::Value());
    const Key b("b", "t", "n", vxJson::Value());
    EXPECT_TRUE(Build(1, b) < Build(2, a));
    EXPECT_TRUE(Build(2, a) < Build(1, b));
    EXPECT_FALSE(Build(5, a) < Build(3, a));
    EXPECT_TRUE(Build(3, a) < Build(5, a));
}

TEST(Query, TheIdentityLeavesOutAnEmptyName) {
    const auto identity = [](const auto& object) {
        vxJson::Value out = Json(R"({"name":"there"})");
        EXPECT_TRUE(object.GetQueryInfo(out));
        return out.toString(false);
    };
    const Key named("d", "t", "n", vxJson::Value());
    const Key unnamed("d", "t", "", vxJson::Value());
    const std::string rest = R"("param":null,"type":"t"})";
    EXPECT_EQ(identity(Build<CDEDeviceDataQueryInfo>(unnamed)),
              R"({"devId":"d","name":"there",)" + rest);
    EXPECT_EQ(identity(Build<CDEDeviceDataQueryInfo>(named)), R"({"devId":"d","name":"n",)" + rest);
    EXPECT_EQ(identity(Build(3, unnamed)), R"({"day":3,"devId":"d","name":"there",)" + rest);
    EXPECT_EQ(identity(Build(3, named)), R"({"day":3,"devId":"d","name":"n",)" + rest);
}

TEST(Query, PrintsFiveLines) {
    EXPECT_EQ(Build(-3, Key("d", "t", "", vxJson::Value())).toPrintString(),
              "day=-3\r\ndevId=d\r\ntype=t\r\nname=\r\nparam=" + vxJson::Value().toStyledString() +
                  "\r\n");
    const vxJson::Value param = Json(R"({"p":[1,2]})");
    const std::string longName(400, 'n');
    EXPECT_EQ(Build(12, Key("", "", longName, param)).toPrintString(),
              "day=12\r\ndevId=\r\ntype=\r\nname=" + longName +
                  "\r\nparam=" + param.toStyledString() + "\r\n");
}

TEST(Query, MatchesDeviceTypes) {
    using Types = std::vector<int>;
    const auto matches = [](const Types& filter, int devType) {
        CDEStructureQueryInfo query;
        query.SetDevTypes(filter);
        return query.IsDevTypeMatch(devType);
    };
    for (const Types& filter : {Types{0}, Types{7, 0}, Types{7, 5}}) {
        EXPECT_TRUE(matches(filter, 5)) << ::testing::PrintToString(filter);
    }
    for (const Types& filter : {Types{}, Types{7, 8}, Types{-5}}) {
        EXPECT_FALSE(matches(filter, 5) || matches(filter, 0)) << ::testing::PrintToString(filter);
    }
}

TEST(Query, DeviceTypesAddToWhatIsThere) {
    CDEStructureQueryInfo query;
    query.LoadFromJson(Json(R"({"devTypes":[4294967301,-1]})"));
    query.LoadFromJson(Json(R"({"devTypes":{"a":1}})"));
    EXPECT_EQ(query.GetDevTypes(), (std::vector<int>{5, -1}));
    // The elements before one that does not convert have been read.
    EXPECT_THROW(query.LoadFromJson(Json(R"({"devTypes":[4,"x",5]})")), vxJson::Error);
    EXPECT_EQ(query.GetDevTypes(), (std::vector<int>{5, -1, 4}));

    vxJson::Value target = Json(R"({"devTypes":["there"]})");
    query.SaveToJson(target);
    EXPECT_EQ(target["devTypes"].toString(false), R"(["there",5,-1,4])");
}

}  // namespace
