#include "structure/PackedFrameWriter.h"

#include <cstring>
#include <functional>
#include <random>

#include "tests/structure/Decode.h"
#include "tests/structure/SampleUnit.h"
#include "tests/support/RandomPacked.h"
#include "tests/support/RoundTrip.h"
#include "tests/support/Rows.h"

namespace {

/// Random documents as the decoder produces them: names repeat, are empty and start with '$', and
/// tables have columns without a value.
class RandomDocument {
  public:
    /// Returns a new document, which stays valid until the next call.
    rapidjson::Document& Next() {
        rapidjson::Document().Swap(document_);
        document_.SetArray();
        for (std::uint64_t left = random_.Below(6); left > 0; --left)
            document_.PushBack(random_.OneIn(3) ? Table() : Item(random_.Below(11)), Pool());
        return document_;
    }

  private:
    rapidjson::Document::AllocatorType& Pool() { return document_.GetAllocator(); }

    template <std::size_t count>
    rapidjson::Value OneOf(const char* const (&texts)[count]) {
        return rapidjson::Value(texts[random_.Below(count)], Pool());
    }

    /// Returns a decoded value. Skips bins with quotes, whose doubles may have more than two
    /// decimals.
    rapidjson::Value Any() {
        std::string packed = random_.Value();
        while (packed.find_first_of("\"\\") != std::string::npos) packed = random_.Value();
        rapidjson::Document decoded;
        DecodeLeaf(packed, decoded);
        return rapidjson::Value(decoded[0]["value"], Pool());
    }

    rapidjson::Value Item(std::uint64_t type) {
        static constexpr const char* kNames[] = {"a", "b",  "a.b", "",
                                                 "$", "$a", "$$a", "a/\"\xff\n"};
        rapidjson::Value item(rapidjson::kObjectType);
        item.AddMember("type", static_cast<int>(type), Pool());
        item.AddMember("name", OneOf(kNames), Pool());
        if (type != 11) item.AddMember("value", Any(), Pool());
        return item;
    }

    rapidjson::Value Children() {
        rapidjson::Value children(rapidjson::kArrayType);
        for (std::uint64_t left = random_.Below(5); left > 0; --left)
            children.PushBack(Item(8 + random_.Below(5)), Pool());
        return children;
    }

    rapidjson::Value Table() {
        static constexpr const char* kHashColumns[] = {
            "null",
            "[18446744073709551615,922.1227649106431]",
            "[5.0,-1.5,-0.0,1000000.0,1234567.0,0.1234567]",
            "1e+21",
            R"(["a","\u0000/\n"])",
            R"({"$binary":{"base64":"/w==","subType":"00"}})",
            R"({"a":[{"b":""},[true]],"b":{"$date":{"$numberLong":"5"}}})",
            R"({"$date":[1000000.0,{"$oid":"0123456789abcdef01234567"}]})"};
        rapidjson::Value table = Item(11);
        table.AddMember("column", Children(), Pool())
            .AddMember("hashSort", random_.OneIn(2), Pool())
            .AddMember("hashColumns", OneOf(kHashColumns), Pool())
            .AddMember("attributes", Children(), Pool());
        return table;
    }

    RandomPacked random_{1};
    rapidjson::Document document_;
};

std::string PayloadOf(const dataengine::PackedFrameWriter& writer) {
    return writer.Frame().substr(static_cast<unsigned>(writer.HeaderLength()));
}

TEST(Writer, PacksEachKindInItsNarrowestForm) {
    for (const auto& row : Rows(R"(
        [127,128,255,256,65535,65536]           | 96 7f cc80 ccff cd0100 cdffff ce00010000
        [4294967295,4294967296,18446744073709551615] | 93 ceffffffff cf0000000100000000 cfffffffffffffffff
        [-32,-33,-128,-129,-32768,-32769]       | 96 e0 d0df d080 d1ff7f d18000 d2ffff7fff
        [-2147483648,-2147483649]               | 92 d280000000 d3ffffffff7fffffff
        [5.0,-0.0,0.1,1e300,null,true]    | 96 cb4014000000000000 cb8000000000000000 cb3fb999999999999a cb7e37e43c8800759c c0 c3
        {"$binary":{"base64":"AGE=","subType":"00"}}     | c402 0061
        {"":[{}],"a\u0000":"\u0000"}                     | 82 a0 9180 a26100 a100)")) {
        dataengine::PackedFrameWriter writer("");
        writer.AddLeaf("", 1, Json(row[0]));
        EXPECT_EQ(PayloadOf(writer), Hex(row[1])) << row[0];
    }
    vxJson::Value lookalike;
    lookalike["$binary"] = "/";
    dataengine::PackedFrameWriter writer("");
    writer.AddLeaf("", 1, lookalike);
    EXPECT_EQ(Text(DecodedWhole(writer)[0]["value"]), R"({"$binary":"/"})");
}

TEST(Writer, WritesDocumentsThatDecodeToThemselves) {
    RandomDocument random;
    std::map<DDKey, DDKey> mapping;
    for (const auto& row : Rows("b | a\n$b | b\n | a.b\n$x.$y | a.a\nx.$y | b.$a"))
        mapping[DDKey("", row[0])] = DDKey("p", row[1]);
    for (int i = 0; i < 1000; ++i) {
        rapidjson::Document& document = random.Next();
        ASSERT_TRUE(RoundTrips(document)) << i;
        std::vector<std::string> items;
        CDEStructureDataHelper::PostDataProcessing(mapping, "p", document, items);
        ASSERT_TRUE(RoundTrips(document)) << i;
    }
}

TEST(Writer, FindsTheDoubleThatDecodesToAnother) {
    std::mt19937_64 random(1);
    std::vector<std::uint64_t> floats;
    const auto add = [&](double least, double greatest) {
        const double value = std::uniform_real_distribution<double>(least, greatest)(random);
        std::memcpy(&floats.emplace_back(), &value, sizeof value);
    };
    for (int i = 0; i < 1000; ++i) {
        floats.push_back(random());
        add(9e13, 9e15);
        add(9e14, 1.1e15);  // where a greater float may decode to a lesser double
        add(1e305, 1.797e308);
    }
    for (const std::uint64_t bits : floats) {
        rapidjson::Document document;
        DecodeLeaf('\xcb' + BigEndian(bits, 8), document);
        ASSERT_TRUE(RoundTrips(document));
    }
}

TEST(Writer, RoundsEachStepOfALongNumber) {
    // A parser that fuses its multiplications and additions reads another last digit.
    rapidjson::Document document;
    DecodeLeaf(Hex("cb 4dfb491000000000"), document);
    dataengine::PackedFrameWriter writer("");
    writer.AddItems(document);
    EXPECT_EQ(PayloadOf(writer), Hex("cb 4dfb491000000002"));
}

TEST(Writer, PacksADoubleThatNoFloatDecodesToAsItIs) {
    for (const double number : {922.1227649106431, 362395754518247.0, 1.7e308}) {
        rapidjson::Document document;
        document.Parse(R"([{"type":1,"name":"a","value":0}])")[0]["value"] = number;
        dataengine::PackedFrameWriter writer("");
        writer.AddItems(document);
        dataengine::PackedFrameWriter ofLeaf("");
        ofLeaf.AddLeaf("a", 1, number);
        EXPECT_EQ(PayloadOf(writer), PayloadOf(ofLeaf)) << number;
    }
}

TEST(Writer, ListsColumnsBeforeAttributes) {
    rapidjson::Document document;
    document.Parse(R"([{"type":11,"name":"t","hashSort":false,"hashColumns":"[]",
        "attributes":[{"type":1,"name":"a","value":"abc"}],
        "column":[{"type":1,"name":"b","value":7},{"type":11,"name":"c"}]}])");
    dataengine::PackedFrameWriter writer("");
    writer.AddItems(document);
    EXPECT_EQ(writer.Offsets(), Json("[[0,0,1]]"));
    EXPECT_EQ(dataengine::PackedFrameWriter("").Frame(), Hex("01 a0 90"));
}

TEST(Writer, RejectsBadInputAndStaysUnchanged) {
    dataengine::PackedFrameWriter writer("unit");
    writer.AddLeaf("a", 1, 1);
    const auto rejects = [&](const std::string& message, const std::function<void()>& add) {
        const std::string frame = writer.Frame();
        const vxJson::Value offsets = writer.Offsets();
        EXPECT_EQ(EndingOf([&] { return add(), true; }), "Error: " + message);
        EXPECT_EQ(writer.Frame(), frame) << message;
        EXPECT_EQ(writer.Offsets(), offsets) << message;
    };
    const vxJson::Value time(5ULL, false);
    auto table = writer.AddTable("t", false, {});
    table.AddColumn("c", 1, {});
    rejects(R"(column "c": is neither an array nor null)", [&] { table.AddColumn("c", 1, 1); });
    rejects(R"(column "c": type 11 marks a table)", [&] { table.AddColumn("c", 11, {}); });
    rejects(R"(attribute "c": type 11 marks a table)", [&] { table.AddAttribute("c", 11, 1); });
    rejects(R"(leaf "c": type 11 marks a table)", [&] { writer.AddLeaf("c", 11, 1); });
    rejects(R"(leaf "c": cannot pack a time)", [&] {
        vxJson::Value value;
        value["a"].append(1);
        value["a"].append(time);
        writer.AddLeaf("c", 1, value);
    });
    for (const auto& row : RowsOf(TEST_DATA "/rejected_documents.txt")) {
        rapidjson::Document document;
        document.Parse(row[0].c_str());
        rejects("document of unit \"unit\": " + row[1], [&] { writer.AddItems(document); });
    }
    table.AddColumn("d", 1, {});
    writer.AddLeaf("b", 1, 1);
    rejects(R"(column "d": another item was added after the table)",
            [&] { table.AddColumn("d", 1, {}); });
    rejects(R"(attribute "d": another item was added after the table)",
            [&] { table.AddAttribute("d", 1, 1); });
    EXPECT_EQ(writer.Offsets(), Json("[0,[1,2],3]"));
}

}  // namespace
