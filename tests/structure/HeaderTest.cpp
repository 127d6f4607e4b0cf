#include "structure/CDEStructureDataHelper.h"
#include "tests/support/BothDecoders.h"
#include "tests/support/RandomPacked.h"
#include "tests/support/Rows.h"
#include "tests/support/Texts.h"

namespace {

TEST(Header, ReplacesOnlyTheOutputsReadBeforeAFailure) {
    for (const auto& row : RowsOf(TEST_DATA "/headers.txt")) {
        SCOPED_TRACE(row[0] + ": " + row[1]);
        const Header header = ReadHeader(Hex(row[1]));
        EXPECT_EQ(header.ending, row[2]);
        EXPECT_EQ(header.name, Json(row[3]).asString());
        EXPECT_EQ(header.schema, Json(row[4]));
        EXPECT_EQ(std::to_string(header.offset), row[5]);
    }
}

TEST(Header, MayReplaceTheFrameByItsName) {
    const std::string name = "a name that no string object holds in itself";
    std::string frame = Hex("01 d9") + static_cast<char>(name.size()) + name + Hex("91 a1 73");
    const std::size_t size = frame.size();
    vxJson::Value schema;
    int offset = 0;
    EXPECT_TRUE(CDEStructureDataHelper::GetBinaryDataInfo(frame, frame, schema, offset));
    EXPECT_EQ(frame, name);
    EXPECT_EQ(schema, Json(R"(["s"])"));
    EXPECT_EQ(static_cast<std::size_t>(offset), size);
}

TEST(Header, MayReplaceTheFrameByItsSchema) {
    const std::string frame = Hex("01 a175 91 a5") + "items";
    vxJson::Value whole = vxJson::Value::Binary(frame);
    vxJson::Value member;
    member["frames"].append(whole);
    for (vxJson::Value* const schema : {&whole, &member}) {
        const std::string& blob = schema->isObject()
                                      ? std::as_const(*schema)["frames"][0].asBinary()
                                      : schema->asBinary();
        std::string name;
        int offset = 0;
        EXPECT_TRUE(CDEStructureDataHelper::GetBinaryDataInfo(blob, name, *schema, offset));
        EXPECT_EQ(*schema, Json(R"(["items"])"));
        EXPECT_EQ(static_cast<std::size_t>(offset), frame.size());
    }
}

TEST(Header, ReportsTheReadersMessage) {
    std::string texts;
    for (const char* frame : {"01", "c1", "a1 31", "01 05"}) {
        Header header;
        try {
            CDEStructureDataHelper::GetBinaryDataInfo(Hex(frame), header.name, header.schema,
                                                      header.offset);
        } catch (const std::exception& error) {
            texts += error.what() + std::string("; ");
        }
    }
    EXPECT_EQ(texts, "insufficient bytes; parse error; bad cast; bad cast; ");
}

// A float in a schema forces the text route for the whole schema.
TEST(Header, BuildsTheSameSchemaAsTheTextRoute) {
    RandomPacked random(2);
    for (int i = 0; i < 2000; ++i) {
        std::string packed = random.Mutated(random.Value());
        const Header built = ReadHeader(Hex("01 a0") + packed);
        if (built.ending != "true" || built.schema.isNull()) continue;
        packed.resize(static_cast<std::size_t>(built.offset) - 2);
        const Header text = ReadHeader(Hex("01 a0 92") + packed + Hex("ca 3f 00 00 00"));
        ASSERT_EQ(built.schema, std::as_const(text.schema)[0]) << HexText(packed);
    }
}

TEST(Header, DepthIsBoundedByMemoryOnlyOnTheTextRoute) {
    const std::string frame = Hex("01 a0") + std::string(1000000, '\x91') + Hex("c4 01 7a");
    const Header header = ReadHeader(frame);
    EXPECT_TRUE(header.schema.isArray());
    EXPECT_EQ(static_cast<std::size_t>(header.offset), frame.size());
}

}  // namespace
