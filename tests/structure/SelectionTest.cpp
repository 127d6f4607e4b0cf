#include "structure/CDEStructureDataHelper.h"
#include "tests/structure/SampleUnit.h"
#include "tests/support/BothDecoders.h"
#include "tests/support/Rows.h"

namespace {

TEST(Selection, DecodesTheItemsThatItNames) {
    const std::string payload = SampleUnit::Payload();
    for (const auto& row : RowsOf(TEST_DATA "/selections.txt")) {
        SCOPED_TRACE(row[0]);
        const bool sample = row[1] == "sample";
        const vxJson::Value schema = Json(sample ? SampleUnit::kSchema : row[1]);
        const vxJson::Value offsets = Json(sample ? SampleUnit::kOffsets : row[2]);
        EXPECT_TRUE(SameDecodingOnBothDecoders(payload, schema, offsets, Json(row[3])));
        rapidjson::Document out;
        out.SetInt(kUntouched);
        const std::string ending = EndingOf([&] {
            return CDEStructureDataHelper::ParseBinaryDataToJson(
                payload.data(), static_cast<int>(payload.size()), schema, offsets, Json(row[3]),
                out);
        });
        EXPECT_EQ(ending.substr(0, ending.find(':')), row[4]) << ending;
        EXPECT_EQ(Text(out), row[5]);
    }
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
