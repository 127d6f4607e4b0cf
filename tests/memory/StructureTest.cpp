#include <algorithm>
#include <string_view>

#include "structure/CDEStructureDataHelper.h"
#include "tests/memory/Attempt.h"
#include "tests/support/Printers.h"

namespace {

// A leaf and a table with two columns and an attribute; their names fit in no short string.
const char* const kSchema = R"([
    {"name":"a leaf with a name of many bytes","type":1,"index":0},
    {"name":"a table with a name of many bytes","type":11,"index":1,"hashSort":true,
     "hashColumns":["a hash column of many bytes"],
     "column":[{"name":"a column with a name of many bytes","type":1,"index":0},
               {"name":"another column with such a name","type":3,"index":1}],
     "attributes":[{"name":"an attribute with a name of many bytes","type":1,"index":2}]}])";

const char* const kUnitName = "a unit of more than fifteen";

std::string Str(const std::string& bytes) {
    return static_cast<char>(0xa0 | bytes.size()) + bytes;
}

/// A header: the version, a name too long for a short string, a schema of one leaf.
std::string Header() {
    return Hex("01") + Str(kUnitName) + Hex("91 83") + Str("name") + Str(std::string(30, 'x')) +
           Str("type") + Hex("01") + Str("index") + Hex("00");
}

/// Two leaves and a table between them, whose values take every road of the decoder: long texts,
/// nesting, a float that goes through text, a bin that does, one that fails to.
struct Unit {
    vxJson::Value schema = Json(kSchema);
    vxJson::Value offsets;
    vxJson::Value fields;
    std::string payload;

    Unit() {
        schema.append(Json(R"({"name":"last","type":1,"index":2})"));
        const int leaf = Add(Hex("92") + Str(std::string(31, 'v')) + Hex("81 a1 6b 92 01 c0"));
        const int column =
            Add(Hex("93 cb 7e37e43c8800759c") + Str(std::string(25, 'c')) + Hex("c4 02 5c6e"));
        const int broken = Add(Hex("92 c4 01 22 91 91 00"));
        offsets = Json("[" + std::to_string(leaf) + ",[" + std::to_string(column) + "," +
                       std::to_string(broken) + "," + std::to_string(leaf) + "]," +
                       std::to_string(leaf) + "]");
    }

    int Add(const std::string& value) {
        const auto offset = static_cast<int>(payload.size());
        payload += value;
        return offset;
    }

    bool Decode(rapidjson::Document& out) const {
        return CDEStructureDataHelper::ParseBinaryDataToJson(
            payload.data(), static_cast<int>(payload.size()), schema, offsets, fields, out);
    }
};

using Pool = rapidjson::Document::AllocatorType;

/// The chunk size of a pool that goes for memory each time, where others get 64 KiB in advance.
constexpr std::size_t kNoReserve = 1;

void ReadHeader(Attempt& attempt) {
    const std::string frame = Header();
    const vxJson::Value old = Json(R"(["an old schema of many bytes"])");
    std::string name = "an old name of many bytes";
    vxJson::Value schema = old;
    int offset = -1;
    const auto read = [&] {
        CDEStructureDataHelper::GetBinaryDataInfo(frame, name, schema, offset);
    };
    if (!attempt.Succeeds(read)) {
        EXPECT_EQ(offset, -1);
        // The name is replaced before the schema is looked at.
        if (name == "an old name of many bytes") {
            EXPECT_EQ(schema, old);
        }
        read();
    }
    EXPECT_EQ(name, kUnitName);
    EXPECT_EQ(offset, static_cast<int>(frame.size()));
    EXPECT_EQ(schema, Json("[{\"name\":\"" + std::string(30, 'x') + "\",\"type\":1,\"index\":0}]"));
}

void Decode(Attempt& attempt, const char* fields) {
    Unit unit;
    unit.fields = Json(fields);
    rapidjson::Document expected;
    ASSERT_TRUE(unit.Decode(expected));
    ASSERT_GE(expected.Size(), 2u);

    Pool pool(kNoReserve);
    rapidjson::Document out(&pool);
    out.SetObject();
    const bool done = attempt.Succeeds([&] { unit.Decode(out); });
    ASSERT_TRUE(out.IsArray());
    if (done) {
        EXPECT_EQ(out.Size(), expected.Size());
    }
    for (rapidjson::SizeType i = 0; i < out.Size(); ++i) EXPECT_EQ(out[i], expected[i]);

    unit.Decode(out);
    EXPECT_EQ(Text(out), Text(expected));
}

void PostProcess(Attempt& attempt) {
    const std::map<DDKey, DDKey> mapping = {
        {{"", "a wanted name of more than twenty bytes"},
         {"p", "a leaf with a name of many bytes"}},
        {{"", "a wanted table of many bytes.a wanted column of many bytes"},
         {"p", "a table with a name of many bytes.a column with a name of many bytes"}},
    };
    const auto process = [&](rapidjson::Document& document, std::vector<std::string>& items) {
        CDEStructureDataHelper::PostDataProcessing(mapping, "p", document, items);
    };
    const Unit unit;
    rapidjson::Document document;
    unit.Decode(document);
    std::vector<std::string> expected = {"an item of many bytes from before"};
    process(document, expected);
    ASSERT_NE(Text(document).find("a wanted column"), std::string::npos);
    ASSERT_EQ(expected.size(), 4u);

    Pool pool(kNoReserve);
    rapidjson::Document renamed(&pool);
    unit.Decode(renamed);
    std::vector<std::string> items = {expected[0]};
    const bool done = attempt.Succeeds([&] { process(renamed, items); });
    if (done) {
        EXPECT_EQ(items.size(), expected.size());
    }
    ASSERT_LE(items.size(), expected.size());
    EXPECT_TRUE(std::equal(items.begin(), items.end(), expected.begin()));
    for (const char* name : {"a wanted name", "a wanted table"}) {
        const bool told = std::any_of(items.begin(), items.end(), [&](const std::string& item) {
            return item.find(name) != std::string::npos;
        });
        if (told) {
            EXPECT_NE(Text(renamed).find(name), std::string::npos) << name;
        }
    }
}

const Operation kOperations[] = {
    {"GetBinaryDataInfo", ReadHeader},
    {"ParseBinaryDataToJson of everything", [](Attempt& attempt) { Decode(attempt, "null"); }},
    {"ParseBinaryDataToJson of a selection",
     [](Attempt& attempt) {
         Decode(attempt, R"(["$last",{"table":"$a table with a name of many bytes","column":
             ["another column with such a name"],"attributes":[]},"unknown","last"])");
     }},
    {"GetChildItemByName",
     [](Attempt& attempt) {
         const Unit unit;
         const vxJson::Value* found = nullptr;
         const bool done = attempt.Succeeds(
             [&] { found = CDEStructureDataHelper::GetChildItemByName("last", unit.schema); });
         if (done) {
             EXPECT_EQ(found, &unit.schema[2]);
         }
     }},
    {"PostDataProcessing", PostProcess},
};

TEST(Memory, DecodesAndRenames) {
    for (const Operation& operation : kOperations) FailEveryAllocation(operation);
}

}  // namespace
