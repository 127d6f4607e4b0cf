#include <gtest/gtest.h>

#include <msgpack.hpp>

#include "structure/CDEStructureDataHelper.h"
#include "tests/structure/SampleUnit.h"
#include "tests/support/Texts.h"

namespace {

/// Decodes the payload of the sample unit; "false" where there is no result.
std::string Decode(const vxJson::Value& schema, const vxJson::Value& offsets,
                   const vxJson::Value& fields, rapidjson::Document& out) {
    const std::string payload = SampleUnit::Payload();
    const bool result = CDEStructureDataHelper::ParseBinaryDataToJson(
        payload.data(), static_cast<int>(payload.size()), schema, offsets, fields, out);
    return result ? Text(out) : "false";
}

constexpr char kHostname[] = R"({"type":1,"name":"hostname","value":"r1"})";
constexpr char kIfName[] = R"({"type":1,"name":"ifName","value":["Gi0/1","Gi0/2"]})";
constexpr char kSpeed[] = R"({"type":3,"name":"speed","value":[1000,2.5]})";
constexpr char kVrf[] = R"({"type":1,"name":"vrf","value":"blue"})";

std::string Table(const std::string& columns, const std::string& attributes) {
    return R"({"type":11,"name":"ifTable","column":[)" + columns +
           R"(],"hashSort":true,"hashColumns":"[\"ifName\"]","attributes":[)" + attributes + "]}";
}

TEST(Selection, ChoosesByNameInItsOwnOrder) {
    const std::string whole = Table(std::string(kIfName) + "," + kSpeed, kVrf);
    const std::string host = kHostname;
    const struct {
        const char* what;
        const char* fields;
        std::string expected;
    } rows[] = {
        {"everything", "null", "[" + host + "," + whole + "]"},
        {"nothing", "[]", "[]"},
        {"a mark in front, columns and no attributes",
         R"(["$hostname",{"table":"ifTable","column":["speed"],"attributes":[]}])",
         "[" + host + "," + Table(kSpeed, "") + "]"},
        {"the selection's order, and a name twice",
         R"([{"table":"$ifTable"},"hostname","hostname"])",
         "[" + whole + "," + host + "," + host + "]"},
        {"unknown names are passed over", R"(["nobody","hostname","","$"])", "[" + host + "]"},
        {"only one mark goes", R"(["$$hostname"])", "[]"},
        {"a leaf in object form", R"([{"table":"hostname","column":["x"]}])", "[" + host + "]"},
        {"an object without a table", R"([{"column":[]}])", "[]"},
        {"null means all", R"([{"table":"ifTable","column":null,"attributes":null}])",
         "[" + whole + "]"},
        {"neither null nor a list means none",
         R"([{"table":"ifTable","column":"speed","attributes":5}])", "[" + Table("", "") + "]"},
        {"column order, unknown and marked columns",
         R"([{"table":"ifTable","column":["speed","$ifName","x","ifName"]}])",
         "[" + Table(std::string(kSpeed) + "," + kIfName, kVrf) + "]"},
        {"a string", "\"hostname\"", "false"},
        {"an object", R"({"table":"ifTable"})", "false"},
    };
    for (const auto& row : rows) {
        rapidjson::Document out;
        out.SetInt(5);
        EXPECT_EQ(
            Decode(Json(SampleUnit::kSchema), Json(SampleUnit::kOffsets), Json(row.fields), out),
            row.expected)
            << row.what;
        if (row.expected == "false") {
            EXPECT_EQ(Text(out), "5") << row.what;
        }
    }
}

TEST(Selection, FollowsTheSchemaAsItIs) {
    const struct {
        const char* what;
        const char* schema;
        const char* offsets;
        const char* fields;
        const char* expected;
    } rows[] = {
        {"no schema", "{}", "[]", "null", "false"},
        {"no offsets", "[]", "null", "[]", "false"},
        {"an empty schema selects nothing at all", "[]", "[]", "null", "false"},
        {"a schema without names", R"([{"type":1},{"name":5},7])", "[0]", "null", "false"},
        {"items without a name are passed over", R"([{"name":5},{"name":"a"}])", "[0]", "null",
         R"([{"type":0,"name":"a","value":"r1"}])"},
        {"an item that is no object reads as the empty name", R"([7])", "[0]", R"([""])",
         R"([{"type":0,"name":"","value":"r1"}])"},
        {"the first of a name wins", R"([{"name":"a","type":1},{"name":"a","type":2}])", "[0]",
         "null", R"([{"type":1,"name":"a","value":"r1"},{"type":1,"name":"a","value":"r1"}])"},
        {"also of two that were passed before",
         R"([{"name":"a","type":1},{"name":"a","type":2},{"name":"b"}])", "[0]", R"(["b","a"])",
         R"([{"type":0,"name":"b","value":"r1"},{"type":1,"name":"a","value":"r1"}])"},
        {"a name with a mark is missed", R"([{"name":"$a"},{"name":"b"}])", "[0]", "null",
         R"([{"type":0,"name":"b","value":"r1"}])"},
        {"and reached with two", R"([{"name":"$a"}])", "[0]", R"(["$$a"])",
         R"([{"type":0,"name":"$a","value":"r1"}])"},
        {"a name ends at a zero byte in the document", R"([{"name":"a\u0000b"}])", "[0]", "null",
         R"([{"type":0,"name":"a","value":"r1"}])"},
        {"an index beyond the offsets is offset 0", R"([{"name":"a","index":9}])", "[3]", "null",
         R"([{"type":0,"name":"a","value":"r1"}])"},
        {"a bare table", R"([{"name":"t","type":11}])", "[]", R"([{"table":"t"}])",
         R"([{"type":11,"name":"t","column":[],"hashSort":false,"hashColumns":"null","attributes":[]}])"},
        {"a leaf with columns", R"([{"name":"t","type":1,"column":[{"name":"c"}]}])", "[0]", "null",
         R"([{"type":1,"name":"t","value":"r1"}])"},
        {"a table among the columns",
         R"([{"name":"t","type":11,"column":[{"name":"c","type":11,"index":99}]}])", "[]", "null",
         R"([{"type":11,"name":"t","column":[{"type":11,"name":"c"}],"hashSort":false,"hashColumns":"null","attributes":[]}])"},
        {"lists that are none",
         R"([{"name":"t","type":11,"column":{"x":{"name":"c"}},"attributes":7}])", "[]",
         R"([{"table":"t"}])",
         R"([{"type":11,"name":"t","column":[],"hashSort":false,"hashColumns":"null","attributes":[]}])"},
    };
    for (const auto& row : rows) {
        rapidjson::Document out;
        EXPECT_EQ(Decode(Json(row.schema), Json(row.offsets), Json(row.fields), out), row.expected)
            << row.what;
    }
}

TEST(Selection, KeepsWhatWasDecodedBeforeAFailure) {
    const auto expect = [](const char* what, const char* schema, const char* offsets,
                           const char* fields, auto error) {
        SCOPED_TRACE(what);
        rapidjson::Document out;
        EXPECT_THROW(Decode(Json(schema), Json(offsets), Json(fields), out), decltype(error));
        EXPECT_EQ(Text(out), R"([{"type":1,"name":"a","value":"r1"}])");
    };
    const msgpack::insufficient_bytes insufficient("");
    const vxJson::Error wrongKind("");
    const char* leaves = R"([{"name":"a","type":1},{"name":"b","index":1}])";
    expect("offset at the end", leaves, "[0,34]", "null", insufficient);
    expect("offset behind the end", leaves, "[0,35]", "null", insufficient);
    expect("negative offset", leaves, "[0,-1]", "null", insufficient);
    expect("offset of another kind", leaves, "[0,\"3\"]", "null", wrongKind);
    expect("offset beyond an int", leaves, "[0,4294967296]", "null", wrongKind);
    expect("a type that is no number", R"([{"name":"a","type":1},{"name":"b","type":"x"}])", "[0]",
           "null", wrongKind);
    expect("a table selected as a leaf", R"([{"name":"a","type":1},{"name":"t","type":11}])", "[0]",
           R"(["a","t"])", wrongKind);
    expect("a table without columns among everything",
           R"([{"name":"a","type":1},{"name":"t","type":11}])", "[0]", "null", wrongKind);
    expect("an entry without a text", leaves, "[0,0]", R"(["a",["b"]])", wrongKind);
    expect("an item's name without a text is met on the way to another",
           R"([{"name":"a","type":1},{"name":[]},{"name":"b"}])", "[0]", R"(["a","b"])", wrongKind);
    expect(
        "a column's offsets that are no list",
        R"([{"name":"a","type":1},{"name":"t","type":11,"index":1,"column":[{"name":"c","index":7},{"name":"d"}]}])",
        "[0,{}]", R"(["a",{"table":"t","column":["c",{}]}])", wrongKind);
}

TEST(Selection, FindsChildrenByTheirExactName) {
    const vxJson::Value list = Json(R"([{"name":"a"},{"name":"b","n":1},{"name":"b","n":2},{}])");
    const auto find = [&](const char* name) {
        return CDEStructureDataHelper::GetChildItemByName(name, list);
    };
    EXPECT_EQ(find("b"), &list[1]);
    EXPECT_EQ(find(""), &list[3]);
    EXPECT_EQ(find("B"), nullptr);
    EXPECT_EQ(CDEStructureDataHelper::GetChildItemByName("a", Json(R"({"name":"a"})")), nullptr);
}

}  // namespace
