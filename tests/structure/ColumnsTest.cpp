#include <gtest/gtest.h>

#include "structure/PackedFrameReader.h"
#include "structure/PackedFrameWriter.h"
#include "structure/PackedTable.h"
#include "structure/detail/MsgpackErrors.h"
#include "tests/support/RandomPacked.h"
#include "tests/support/SameDocument.h"
#include "tests/support/SameReading.h"

namespace {

using dataengine::PackedColumn;
using dataengine::PackedFrameReader;
using dataengine::PackedTable;

/// Returns a frame of the table "t", whose column "c" has this packed value.
std::string FrameOf(const std::string& packed) {
    dataengine::PackedFrameWriter writer("unit");
    auto table = writer.AddTable("t", false, {});
    table.AddColumn("c", 3, vxJson::Value());
    return writer.Frame().substr(0, static_cast<std::size_t>(writer.HeaderLength())) + packed;
}

std::string ArrayHead(std::uint64_t count) {
    return std::string("\xdc\0", 2) + static_cast<char>(count);
}

TEST(Columns, EqualTheDocument) {
    RandomPacked random(18);
    PackedFrameReader reader;
    int arrays = 0;
    for (int round = 0; round < 3000; ++round) {
        // Most columns hold values of one or two kinds, and nil.
        const std::string kinds[] = {random.Value(), random.Value(), "\xc0"};
        const std::uint64_t count = random.Below(6);
        std::string packed = ArrayHead(count);
        for (std::uint64_t i = 0; i < count; ++i)
            packed += random.OneIn(9) ? random.Value() : kinds[random.Below(3)];
        if (random.OneIn(20)) packed = random.Value();

        const std::string frame = FrameOf(packed);
        ASSERT_TRUE(reader.Open(frame));
        rapidjson::Document document;
        ASSERT_TRUE(reader.Decode(document));
        PackedTable table;
        ASSERT_TRUE(reader.DecodeTable("t", table));
        ASSERT_EQ(table.columns.size(), 1u);
        const PackedColumn& column = table.columns[0];
        ASSERT_TRUE(SameDocument(DocumentValue(column, document.GetAllocator()),
                                 document[0]["column"][0]["value"]))
            << round;
        arrays += std::holds_alternative<rapidjson::Value>(column.values) ? 0 : 1;
    }
    EXPECT_GT(arrays, 500);
}

TEST(Columns, AreArraysIfAllValuesAreOfOneKind) {
    enum Kind { kMixed, kSigned, kUnsigned, kDouble, kBoolean, kText };
    const struct {
        const char* name;
        std::string elements;
        std::uint64_t count;
        Kind kind;
    } rows[] = {
        {"signed", "\x01\xff", 2, kSigned},
        {"unsigned", "\x01\xcf\xff\xff\xff\xff\xff\xff\xff\xff", 2, kUnsigned},
        {"beyond both", "\xff\xcf\xff\xff\xff\xff\xff\xff\xff\xff", 2, kMixed},
        {"null first", "\xc0\xc0\x01", 3, kSigned},
        {"float32", std::string("\xca\x3f\x80\0\0", 5), 1, kDouble},
        {"tie", "\xcb\x3f\xf0\x14\x7a\xe1\x47\xae\x14", 1, kDouble},
        {"boolean", "\xc2\xc3", 2, kBoolean},
        {"text", "\xa1x\xa0", 2, kText},
        {"text and bin", "\xa1x\xc4\x01y", 2, kText},
        {"bin of text", "\xc4\x02\\n\xc0", 2, kText},
        {"only null", "\xc0\xc0", 2, kMixed},
        {"empty", "", 0, kMixed},
        {"integer and boolean", "\x01\xc2", 2, kMixed},
        {"nested", "\x01\x91\x01", 2, kMixed},
        {"null, integer and text", "\xc0\x01\xa1x", 3, kMixed},
    };
    for (const auto& row : rows) {
        const std::string frame = FrameOf(ArrayHead(row.count) + row.elements);
        PackedFrameReader reader;
        ASSERT_TRUE(reader.Open(frame));
        PackedTable table;
        ASSERT_TRUE(reader.DecodeTable("t", table));
        EXPECT_EQ(table.columns[0].values.index(), row.kind) << row.name;
        EXPECT_EQ(table.columns[0].type, 3) << row.name;
        EXPECT_TRUE(row.kind != kMixed || table.columns[0].isNull.empty()) << row.name;
    }
}

TEST(Columns, FollowTheSelection) {
    dataengine::PackedFrameWriter writer("unit");
    writer.AddLeaf("leaf", 1, 7);
    auto written = writer.AddTable("t", false, {});
    for (const char* name : {"a", "b", "c"}) {
        vxJson::Value values;
        values.append(name);
        written.AddColumn(name, 1, values);
    }
    written.AddAttribute("vrf", 2, "blue");
    const std::string frame = writer.Frame();

    vxJson::Value entry, selection;
    entry["table"] = "t";
    for (const char* name : {"c", "a", "none"}) entry["column"].append(name);
    selection.append(entry);
    PackedFrameReader reader(selection);
    ASSERT_TRUE(reader.Open(frame));
    for (const bool given : {true, false}) {
        PackedTable table;
        ASSERT_TRUE(given ? reader.DecodeTable("t", writer.Offsets(), table)
                          : reader.DecodeTable("t", table));
        ASSERT_EQ(table.columns.size(), 2u);
        EXPECT_EQ(table.columns[0].name, "c");
        EXPECT_EQ(std::get<PackedColumn::Texts>(table.columns[1].values)[0], "a");
        EXPECT_EQ(std::string(table.document[0]["value"].GetString()), "blue");
        EXPECT_FALSE(reader.DecodeTable("leaf", table));
        EXPECT_FALSE(reader.DecodeTable("none", table));
        EXPECT_FALSE(reader.DecodeTable("t", vxJson::Value(), table));
    }
}

TEST(Columns, ReportItemAndByte) {
    PackedFrameReader reader;
    PackedTable table;
    EXPECT_THROW(reader.DecodeTable("t", table), vxJson::Error);
    const std::string header = FrameOf("");
    const auto textOf = [&](const std::string& packed) -> std::string {
        const std::string frame = header + packed;
        EXPECT_TRUE(reader.Open(frame));
        vxJson::Value inner, offsets;
        inner.append(0);
        offsets.append(inner);
        try {
            reader.DecodeTable("t", offsets, table);
        } catch (const std::exception& error) {
            return error.what();
        }
        return "nothing";
    };
    const std::string byte = "t.c: byte " + std::to_string(header.size() + 1) + ": ";
    EXPECT_EQ(textOf("\x92\xc1"), byte + "0xc1 does not start a value");
    EXPECT_EQ(textOf("\x92\xa2x"), byte + "the string ends beyond the frame");
    EXPECT_EQ(textOf("\x92\x01\x02"), "nothing");
    reader.SetLimit(2);
    EXPECT_EQ(textOf("\x92\x01\x02"), "t.c: the limit of 2 packed bytes is reached");
}

}  // namespace
