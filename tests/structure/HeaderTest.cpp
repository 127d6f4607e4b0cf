#include <gtest/gtest.h>

#include <msgpack.hpp>

#include "structure/CDEStructureDataHelper.h"
#include "tests/structure/SampleUnit.h"
#include "tests/support/Texts.h"

namespace {

struct Header {
    bool result = false;
    std::string name = "old name";
    vxJson::Value schema = Json("\"old schema\"");
    int offset = -7;
};

Header Read(const std::string& frame) {
    Header header;
    header.result =
        CDEStructureDataHelper::GetBinaryDataInfo(frame, header.name, header.schema, header.offset);
    return header;
}

TEST(Header, ReadsTheWorkedExample) {
    const std::string frame = SampleUnit::Header() + SampleUnit::Payload();
    const Header header = Read(frame);
    EXPECT_TRUE(header.result);
    EXPECT_EQ(header.name, "demo");
    EXPECT_EQ(header.offset, 186);
    EXPECT_EQ(header.schema, Json(SampleUnit::kSchema));
}

TEST(Header, ReadsEveryFormOfTheThreeObjects) {
    const struct {
        const char* what;
        std::string frame;
        std::string name;
        const char* schema;
        int offset;
    } rows[] = {
        {"wide version", Hex("cd 00 01 a1 6e 90"), "n", "[]", 6},
        {"version in the signed form", Hex("d3 00 00 00 00 00 00 00 01 a1 6e 90"), "n", "[]", 12},
        {"bin name with a zero byte", Hex("01 c4 03 61 00 62 90"), std::string("a\0b", 3), "[]", 7},
        {"empty names", Hex("01 a0 90"), "", "[]", 3},
        {"empty bin name", Hex("01 c4 00 90"), "", "[]", 4},
        {"payload behind", Hex("01 a1 6e 90 c1 c1"), "n", "[]", 4},
        {"floats with 6 digits", Hex("01 a0 92 cb 3f f5 55 55 55 55 55 55 ca 49 96 b4 38"), "",
         "[1.33333,1.23457e+06]", 17},
        {"whole float reads as an integer", Hex("01 a0 91 cb 40 14 00 00 00 00 00 00"), "", "[5]",
         12},
        {"escapes", Hex("01 a0 a8 22 5c 2f 08 0c 0a 00 7f"), "", R"("\"\\\/\b\f\n\u0000\u007f")",
         11},
        {"nested", Hex("01 a0 82 a1 61 92 c0 c3 a1 62 81 a1 63 ff"), "",
         R"({"a":[null,true],"b":{"c":-1}})", 14},
        {"bin in the schema, printed as it is", Hex("01 a0 c4 02 5c 6e"), "", R"("\n")", 6},
        {"ext schema", Hex("01 a1 6e d4 05 00"), "n", "null", 6},
        {"schema with an integer key", Hex("01 a0 81 01 02"), "", "null", 5},
        {"schema with a NaN", Hex("01 a0 cb 7f f8 00 00 00 00 00 00"), "", "null", 11},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const Header header = Read(row.frame);
        EXPECT_TRUE(header.result);
        EXPECT_EQ(header.name, row.name);
        EXPECT_EQ(header.schema, Json(row.schema));
        EXPECT_EQ(header.offset, row.offset);
    }
}

TEST(Header, LeavesOtherVersionsAlone) {
    for (const char* frame : {"02", "ff", "00 c1", "d2 80 00 00 00", "ce 7f ff ff ff"}) {
        SCOPED_TRACE(frame);
        const Header header = Read(Hex(frame));
        EXPECT_FALSE(header.result);
        EXPECT_EQ(header.name, "old name");
        EXPECT_EQ(header.schema, Json("\"old schema\""));
        EXPECT_EQ(header.offset, -7);
    }
}

template <typename Error>
void ExpectFailure(const char* frame, const char* text, const std::string& nameAfterwards) {
    SCOPED_TRACE(frame);
    Header header;
    try {
        CDEStructureDataHelper::GetBinaryDataInfo(Hex(frame), header.name, header.schema,
                                                  header.offset);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const Error& error) {
        EXPECT_STREQ(error.what(), text);
    }
    EXPECT_EQ(header.name, nameAfterwards);
    EXPECT_EQ(header.schema, Json("\"old schema\""));
    EXPECT_EQ(header.offset, -7);
}

TEST(Header, RaisesWhatIsWrongAndKeepsWhatWasRead) {
    for (const char* frame : {"", "cd 00", "01", "01 a2 6e", "01 92 a1 6e", "91"}) {
        ExpectFailure<msgpack::insufficient_bytes>(frame, "insufficient bytes", "old name");
    }
    for (const char* frame : {"01 a1 6e", "01 a1 6e 92 01", "01 a1 6e a5 61"}) {
        ExpectFailure<msgpack::insufficient_bytes>(frame, "insufficient bytes", "n");
    }
    for (const char* frame : {"c1", "01 c1", "92 01 c1", "01 92 a1 6e c1"}) {
        ExpectFailure<msgpack::parse_error>(frame, "parse error", "old name");
    }
    ExpectFailure<msgpack::parse_error>("01 a1 6e 93 01 c1", "parse error", "n");
    for (const char* frame : {"cb 3f f0 00 00 00 00 00 00", "a1 31", "c0", "91 01", "81 01 01",
                              "cf 00 00 00 01 00 00 00 01", "ce 80 00 00 00",
                              "d3 ff ff ff ff 7f ff ff ff", "01 05", "01 91 a1 6e", "01 c0"}) {
        ExpectFailure<msgpack::type_error>(frame, "bad cast", "old name");
    }
}

}  // namespace
