#include "structure/CDEStructureDataHelper.h"
#include "tests/structure/SampleUnit.h"
#include "tests/support/BothDecoders.h"
#include "tests/support/Rows.h"

namespace {

TEST(Header, ReadsASampleUnit) {
    const Header header = ReadHeader(SampleUnit::Header() + SampleUnit::Payload());
    EXPECT_EQ(header.name, "demo");
    EXPECT_EQ(header.offset, 186);
    EXPECT_EQ(header.schema, Json(SampleUnit::kSchema));
}

TEST(Header, IsReadOrLeftAsFarAsItIsSound) {
    for (const auto& row : RowsOf(TEST_DATA "/headers.txt")) {
        SCOPED_TRACE(row[0] + ": " + row[1]);
        const Header header = ReadHeader(Hex(row[1]));
        EXPECT_EQ(header.ending, row[2]);
        EXPECT_EQ(header.name, Json(row[3]).asString());
        EXPECT_EQ(header.schema, Json(row[4]));
        EXPECT_EQ(std::to_string(header.offset), row[5]);
    }
}

TEST(Header, FailsInTheWordsOfTheReader) {
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

}  // namespace
