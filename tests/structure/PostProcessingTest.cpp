#include <gtest/gtest.h>

#include <limits>

#include "structure/CDEStructureDataHelper.h"
#include "tests/support/Texts.h"

namespace {

/// A mapping as text: [[wanted parser path, wanted name, parser path, name], ...].
std::map<DDKey, DDKey> Mapping(const char* text) {
    std::map<DDKey, DDKey> mapping;
    const vxJson::Value rows = Json(text);
    for (int i = 0; i < static_cast<int>(rows.size()); ++i) {
        mapping[DDKey(rows[i][0].asString(), rows[i][1].asString())] =
            DDKey(rows[i][2].asString(), rows[i][3].asString());
    }
    return mapping;
}

std::vector<std::string> Process(const char* mapping, const char* document) {
    rapidjson::Document parsed;
    parsed.Parse(document);
    std::vector<std::string> items;
    EXPECT_TRUE(CDEStructureDataHelper::PostDataProcessing(Mapping(mapping), "p", parsed, items));
    return items;
}

using Items = std::vector<std::string>;

TEST(PostProcessing, RenamesTheWorkedExample) {
    EXPECT_EQ(Process(R"([["","deviceName","p","hostname"],["","Links.Port","p","ifTable.ifName"],
                          ["","Links.Rate","p","ifTable.speed"],["","Age","q","uptime"]])",
                      R"([{"type":1,"name":"hostname","value":"r1"},
                          {"type":1,"name":"uptime","value":3},
                          {"type":11,"name":"ifTable","column":[{"name":"ifName"},{"name":"speed"},
                           {"name":"descr"}],"hashSort":true,"attributes":[{"name":"ifName"}]}])"),
              (Items{R"({"type":1,"name":"deviceName","value":"r1"})",
                     R"({"type":1,"name":"uptime","value":3})",
                     R"({"type":11,"name":"Links","column":[{"name":"Port"},{"name":"Rate"},)"
                     R"({"name":"descr"}],"hashSort":true,"attributes":[{"name":"ifName"}]})"}));
}

TEST(PostProcessing, FollowsEachRule) {
    const char* table = R"([{"type":11,"name":"t","column":[{"name":"a"},{"name":"b"}]}])";
    const struct {
        const char* what;
        const char* mapping;
        const char* document;
        Items expected;
    } rows[] = {
        {"no mapping", "[]", R"([{"name":"x"}])", {R"({"name":"x"})"}},
        {"the greatest key wins",
         R"([["","z","p","x"],["a","b","p","x"],["a","a","p","x"]])",
         R"([{"name":"x"}])",
         {R"({"name":"b"})"}},
        {"a leaf's name keeps its dots",
         R"([["","a.b","p","x"]])",
         R"([{"name":"x"}])",
         {R"({"name":"a.b"})"}},
        {"a split at the first dot",
         R"([["","a.b.c","p","t.a"]])",
         table,
         {R"({"type":11,"name":"a","column":[{"name":"b.c"},{"name":"b"}]})"}},
        {"an empty table name",
         R"([["",".c","p","t.a"]])",
         table,
         {R"({"type":11,"name":"","column":[{"name":"c"},{"name":"b"}]})"}},
        {"an empty column name",
         R"([["","a.","p","t.a"]])",
         table,
         {R"({"type":11,"name":"a","column":[{"name":""},{"name":"b"}]})"}},
        {"no dot, no effect",
         R"([["","c","p","t.a"],["","","p","t.b"]])",
         table,
         {R"({"type":11,"name":"t","column":[{"name":"a"},{"name":"b"}]})"}},
        {"the last column names the table",
         R"([["","A.x","p","t.a"],["","B.y","p","t.b"]])",
         table,
         {R"({"type":11,"name":"B","column":[{"name":"x"},{"name":"y"}]})"}},
        {"a table's own name is not looked up",
         R"([["","T","p","t"]])",
         table,
         {R"({"type":11,"name":"t","column":[{"name":"a"},{"name":"b"}]})"}},
        {"dots in a column's name",
         R"([["","T.c","p","t.a.b"]])",
         R"([{"type":11,"name":"t","column":[{"name":"a.b"}]}])",
         {R"({"type":11,"name":"T","column":[{"name":"c"}]})"}},
        {"names end at a zero byte",
         R"([["","w\u0000z","p","x"]])",
         R"([{"name":"x\u0000y"}])",
         {R"({"name":"w"})"}},
        {"a missing name is written nowhere",
         R"([["","n","p",""],["","A.b","p","."]])",
         R"([{"type":1},{"type":11,"column":[{}]},7,[1],"x",null])",
         {R"({"type":1})", R"({"type":11,"column":[{}]})", "7", "[1]", "\"x\"", "null"}},
        {"names of other kinds read as empty",
         R"([["","n","p",""],["","A.b","p","."]])",
         R"([{"name":null},{"name":5},{"name":{"name":"x"}},{"type":11,"name":[],"column":[{"name":1}]}])",
         {R"({"name":"n"})", R"({"name":"n"})", R"({"name":"n"})",
          R"({"type":11,"name":"A","column":[{"name":"b"}]})"}},
        {"columns that are none",
         R"([["","A.b","p","t.a"]])",
         R"([{"type":11,"name":"t"},{"type":11,"name":"t","column":{"name":"a"}},
             {"type":11,"name":"t","column":[7,"a",null]}])",
         {R"({"type":11,"name":"t"})", R"({"type":11,"name":"t","column":{"name":"a"}})",
          R"({"type":11,"name":"t","column":[7,"a",null]})"}},
        {"types of other kinds are plain",
         R"([["","n","p","x"]])",
         R"([{"type":"11","name":"x"},{"type":11.0,"name":"x"},{"type":4294967307,"name":"x"}])",
         {R"({"type":"11","name":"n"})", R"({"type":11.0,"name":"n"})",
          R"({"type":4294967307,"name":"n"})"}},
        {"the first of two names counts",
         R"([["","n","p","x"]])",
         R"([{"name":"x","name":"x"}])",
         {R"({"name":"n","name":"x"})"}},
        {"no array", "[]", R"({"name":"x"})", {}},
        {"an empty array", "[]", "[]", {}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Process(row.mapping, row.document), row.expected) << row.what;
}

TEST(PostProcessing, AppendsAndWorksOnTheNamesItFinds) {
    rapidjson::Document document;
    document.Parse(R"([{"name":"a"}])");
    Items items = {"one", "two"};
    const auto mapping = Mapping(R"([["","b","p","a"],["","c","p","b"]])");
    CDEStructureDataHelper::PostDataProcessing(mapping, "p", document, items);
    CDEStructureDataHelper::PostDataProcessing(mapping, "p", document, items);
    EXPECT_EQ(items, (Items{"one", "two", R"({"name":"b"})", R"({"name":"c"})"}));
    EXPECT_EQ(Text(document), R"([{"name":"c"}])");
}

TEST(PostProcessing, TakesAnItemAsFarAsTheWriterCame) {
    rapidjson::Document document;
    document.Parse(R"([{"a":1,"v":0,"b":2},{"c":[{}]}])");
    document[0]["v"].SetDouble(std::numeric_limits<double>::quiet_NaN());
    Items items;
    CDEStructureDataHelper::PostDataProcessing({}, "p", document, items);
    EXPECT_EQ(items, (Items{R"({"a":1,"v":)", R"({"c":[{}]})"}));
}

}  // namespace
