#include "structure/PackedFrameReader.h"

#include <gtest/gtest.h>

#include <array>
#include <exception>
#include <string>
#include <vector>

#include "tests/structure/SampleUnit.h"
#include "tests/support/Ending.h"
#include "tests/support/RandomPacked.h"
#include "tests/support/SameReading.h"
#include "tests/support/Texts.h"

namespace {

using dataengine::PackedFrameReader;
using dataengine::PackedFrameWriter;

/// A frame with a random schema: repeated and marked names, wrong kinds, missing members.
class RandomFrames {
  public:
    explicit RandomFrames(std::uint64_t seed) : random_(seed) {}

    /// Returns one of a few headers, sometimes a broken one.
    std::string Header() {
        if (headers_.size() < 8 || random_.OneIn(10)) {
            const char* const version = random_.OneIn(20) ? "\x02" : "\x01";
            headers_.push_back(version + std::string("\xa1u") + Packed(Items(true)));
        }
        const std::string header = headers_[random_.Below(headers_.size())];
        return random_.OneIn(10) ? random_.Mutated(header) : header;
    }

    std::string Payload() {
        std::string bytes;
        for (int i = 0; i < 6; ++i) bytes += random_.Value();
        if (random_.OneIn(3)) bytes.resize(random_.Below(bytes.size() + 1));
        return bytes;
    }

    vxJson::Value Offsets(std::size_t size) {
        vxJson::Value offsets(vxJson::arrayKind, false);
        for (int i = 0; i < 4; ++i) {
            vxJson::Value& entry = offsets[i] = Offset(size);
            if (random_.OneIn(2)) continue;
            entry = vxJson::Value();
            for (int child = 0; child < 4; ++child) entry[child] = Offset(size);
        }
        if (random_.OneIn(20)) offsets = "none";
        return offsets;
    }

    vxJson::Value Selection() {
        vxJson::Value selection;
        for (std::uint64_t i = random_.Below(5); i != 0; --i) {
            vxJson::Value& entry = selection.append(Name());
            if (random_.OneIn(2)) continue;
            entry = vxJson::Value();
            entry["table"] = Name();
            if (random_.OneIn(3)) entry["column"].append(Name());
            if (random_.OneIn(3)) entry["attributes"] = vxJson::Value(vxJson::arrayKind, false);
            if (random_.OneIn(9)) entry["column"] = 3;
        }
        return selection;
    }

  private:
    static std::string Packed(const vxJson::Value& items) {
        PackedFrameWriter writer("");
        writer.AddLeaf("", 1, items);
        const std::string frame = writer.Frame();
        return frame.substr(static_cast<std::size_t>(writer.HeaderLength()));
    }

    vxJson::Value Name() {
        static constexpr std::array<const char*, 7> kNames = {"a", "b", "$a", "$$b", "", "$", "c"};
        if (random_.OneIn(30)) return vxJson::Value(vxJson::objectKind, false);
        if (random_.OneIn(15)) return 7;
        return kNames[random_.Below(kNames.size())];
    }

    vxJson::Value Items(bool top) {
        vxJson::Value items(vxJson::arrayKind, false);
        for (std::uint64_t i = random_.Below(5); i != 0; --i) {
            vxJson::Value item;
            item["name"] = Name();
            item["type"] = random_.OneIn(3) ? 11 : 1;
            item["index"] = static_cast<int>(random_.Below(4));
            if (random_.OneIn(12)) item["type"] = "x";
            if (random_.OneIn(12)) item["index"] = vxJson::Value(vxJson::arrayKind, false);
            if (random_.OneIn(20)) item = 5;
            if (top && item.isObject()) {
                if (!random_.OneIn(4)) item["column"] = Items(false);
                if (!random_.OneIn(4)) item["attributes"] = Items(false);
                if (random_.OneIn(2)) item["hashSort"] = random_.OneIn(2);
                if (random_.OneIn(9)) item["hashSort"] = "x";
            }
            items.append(item);
        }
        return items;
    }

    vxJson::Value Offset(std::size_t size) {
        if (random_.OneIn(15)) return "x";
        if (random_.OneIn(15)) return -1;
        return static_cast<int>(random_.Below(size + 2));
    }

    RandomPacked random_;
    std::vector<std::string> headers_;
};

// Readers are kept over frames whose headers alternate, are broken, or are of another version.
TEST(Reader, DecodesAsTheHelper) {
    RandomFrames random(1);
    for (int i = 0; i < 200; ++i) {
        const vxJson::Value fields = random.Selection();
        PackedFrameReader reader(fields);
        reader.SetLimit(1u << 30);
        for (int frame = 0; frame < 60; ++frame) {
            const std::string payload = random.Payload();
            ASSERT_TRUE(SameReading(reader, random.Header() + payload,
                                    random.Offsets(payload.size()), fields))
                << i << ' ' << frame;
        }
    }
}

TEST(Reader, SelectsAWholeTableByItsName) {
    const PackedFrameWriter writer = SampleUnit::Written();
    const std::string frame = writer.Frame();
    for (const char* selection :
         {R"(["ifTable"])", R"(["$ifTable"])", R"([{"table":"ifTable"}])"}) {
        PackedFrameReader reader(Json(selection));
        ASSERT_TRUE(reader.Open(frame));
        rapidjson::Document document;
        ASSERT_TRUE(reader.Decode(document));
        EXPECT_EQ(document.Size(), 1u) << selection;
        EXPECT_EQ(document[0]["column"].Size(), 2u) << selection;
        EXPECT_EQ(document[0]["attributes"].Size(), 1u) << selection;
    }
}

TEST(Reader, NamesItemAndByteInErrors) {
    const std::string header = SampleUnit::Header();
    const std::string payload = SampleUnit::Payload();
    const struct {
        std::string frame;
        const char* offsets;
        const char* what;
    } rows[] = {
        {"", "[]", "version: byte 0: the frame ends before a value"},
        {"\x93\x01\xc1", "[]", "version: byte 2: 0xc1 does not start a value"},
        {"\xa1x", "[]", "version: byte 0: not a 32-bit integer"},
        {"\x01\xa5u", "[]", "name: byte 1: the string ends beyond the frame"},
        {"\x01\x07\x90", "[]", "name: byte 1: neither a string nor a binary"},
        {"\x01\xa1u\x92\xa1x\xcd", "[]", "schema: byte 6: the number ends beyond the frame"},
        {header + payload.substr(0, 33), "[29]",
         "hostname: byte 215: the string ends beyond the frame"},
        {header + payload, "[34,[3,16,29]]", "hostname: byte 220: the frame ends before a value"},
        {header + payload, "[35]", "hostname: byte 221: the value begins outside the payload"},
        {header + payload, "[-1]", "hostname: byte 185: the value begins outside the payload"},
        {header + payload.substr(0, 12), "[0,[3]]",
         "ifTable.ifName: byte 196: the string ends beyond the frame"},
        {header + payload.substr(0, 16) + "\x92\x01\xc1", "[0,[3,16]]",
         "ifTable.speed: byte 204: 0xc1 does not start a value"},
        {header + payload, "[\"x\"]", "hostname: asInt: found kind string, wanted a number"},
        {header + payload, "[0,[3,{}]]",
         "ifTable.speed: asInt: found kind object, wanted a number"},
    };
    PackedFrameReader reader;
    for (const auto& row : rows) {
        rapidjson::Document document;
        std::string what = "none";
        try {
            reader.Open(row.frame);
            reader.Decode(Json(row.offsets), document);
        } catch (const std::exception& error) {
            what = error.what();
        }
        EXPECT_EQ(what, row.what);
    }
}

TEST(Reader, NamesTheItemOfAnUnsuitableSchema) {
    const struct {
        const char* items;
        const char* what;
    } rows[] = {
        {R"([{"name":"a"},{"name":"b","type":"x"}])",
         "b: asInt: found kind string, wanted a number"},
        {R"([{"name":"t","type":11,"column":[{"name":"c","index":[]}]}])",
         "t.c: asInt: found kind array, wanted a number"},
        {R"([{"name":"t","type":11,"column":[],"hashSort":"x"}])",
         "t: asBool: found kind string, wanted a bool or a number"},
    };
    for (const auto& row : rows) {
        PackedFrameWriter packer("");
        packer.AddLeaf("", 1, Json(row.items));
        const std::string items =
            packer.Frame().substr(static_cast<std::size_t>(packer.HeaderLength()));
        const std::string frame = "\x01\xa1u" + items + "\x07";
        PackedFrameReader reader;
        ASSERT_TRUE(reader.Open(frame));
        rapidjson::Document document;
        EXPECT_EQ(EndingOf([&] { return reader.Decode(Json("[0]"), document); }),
                  std::string("Error: ") + row.what);
    }
}

TEST(Reader, HasNoFrameAfterAFailedOpen) {
    const std::string frame = SampleUnit::Written().Frame();
    rapidjson::Document document;
    PackedFrameReader reader;
    EXPECT_EQ(EndingOf([&] { return reader.Decode(document); }), "Error: no frame is open");
    for (const char* bytes : {"\x02", ""}) {
        ASSERT_TRUE(reader.Open(frame));
        EXPECT_TRUE(reader.Decode(document));
        EXPECT_EQ(reader.Payload(), SampleUnit::Payload());
        EndingOf([&] { return reader.Open(bytes); });
        EXPECT_EQ(EndingOf([&] { return reader.Decode(Json("[]"), document); }),
                  "Error: no frame is open");
        EXPECT_EQ(reader.Name() + reader.Schema().toString(false), "null");
        EXPECT_EQ(reader.HeaderLength(), 0);
        EXPECT_EQ(reader.Payload(), "");
    }
}

// The items of this schema share one value, as those of a hostile one may.
TEST(Reader, ReadsAtMostAsManyBytesAsTheLimit) {
    PackedFrameWriter packer("");
    packer.AddLeaf("", 1,
                   Json(R"([{"name":"a"},{"name":"b"},{"name":"c"},{"name":"d"},{"name":"e"}])"));
    const std::string items =
        packer.Frame().substr(static_cast<std::size_t>(packer.HeaderLength()));
    const std::string frame = "\x01\xa1u" + items + "\xa3xyz";
    const struct {
        int limit;  // -1 for the default
        const char* ending;
        unsigned decoded;
    } rows[] = {
        {-1, "Error: e: the limit of 16 packed bytes is reached", 4},
        {20, "true", 5},
        {19, "Error: e: the limit of 19 packed bytes is reached", 4},
        {0, "Error: a: the limit of 0 packed bytes is reached", 0},
    };
    for (const auto& row : rows) {
        PackedFrameReader reader;
        if (row.limit >= 0) reader.SetLimit(static_cast<std::size_t>(row.limit));
        ASSERT_TRUE(reader.Open(frame));
        rapidjson::Document document;
        EXPECT_EQ(EndingOf([&] { return reader.Decode(Json("[0]"), document); }), row.ending);
        EXPECT_EQ(document.Size(), row.decoded);
    }
}

TEST(Reader, FindsTheOffsetsOfConsecutiveValues) {
    const struct {
        const char* items;
        const char* payload;
        const char* offsets;  // or the error
    } rows[] = {
        {"[]", "", "[]"},
        {R"([{"name":"b","index":1},{"name":"a"}])", "cd0102 07", "[0,3]"},
        {R"([{"name":"a"},{"name":"a2"},{"name":"d","index":3}])", "9107 08 ff", "[0,null,null,2]"},
        {R"([{"name":"t","type":11,"column":[{"name":"x","index":2},{"name":"n","type":11}],
            "attributes":[{"name":"y"},{"name":"z","index":2}]},{"name":"l","index":1}])",
         "a161 07 c0", "[[0,null,2],3]"},
        {R"([{"name":"t","type":11}])", "07", "[[]]"},
        {R"([{"name":"a"},{"name":"b","index":1}])", "07 a2",
         "insufficient_bytes: b: byte 28: the string ends beyond the frame"},
        {R"([{"index":-1}])", "07", "Error: unnamed item: the index -1 is negative"},
        {R"([{"name":"a","type":"x"}])", "07",
         "Error: a: asInt: found kind string, wanted a number"},
        {R"([{"name":"a","index":1000}])", "07",
         "Error: a: the index 1000 exceeds the number of bytes of the frame"},
        {R"([{"name":"a"},{"name":"t","type":11}])", "07",
         "Error: t: a leaf and a table have the index 0"},
    };
    for (const auto& row : rows) {
        PackedFrameWriter packer("");
        packer.AddLeaf("", 1, Json(row.items));
        const std::string items =
            packer.Frame().substr(static_cast<std::size_t>(packer.HeaderLength()));
        const std::string frame = "\x01\xa1u" + items + Hex(row.payload);
        PackedFrameReader reader;
        ASSERT_TRUE(reader.Open(frame));
        std::string found;
        try {
            found = reader.FindOffsets().toString(false);
        } catch (const msgpack::insufficient_bytes& error) {
            found = std::string("insufficient_bytes: ") + error.what();
        } catch (const vxJson::Error& error) {
            found = std::string("Error: ") + error.what();
        }
        EXPECT_EQ(found, row.offsets) << row.items;
    }
    const PackedFrameWriter writer = SampleUnit::Written();
    const std::string frame = writer.Frame() + "more";
    PackedFrameReader reader;
    ASSERT_TRUE(reader.Open(frame));
    EXPECT_EQ(reader.FindOffsets(), writer.Offsets());
}

}  // namespace
