#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <streambuf>
#include <tuple>
#include <vector>

#include "bson/Bson.h"
#include "descriptors/CDEDeviceMetadata.h"
#include "query/CDEQueryResultStructureData.h"
#include "structure/CDEStructureDataHelper.h"
#include "structure/PackedFrameReader.h"
#include "structure/PackedFrameWriter.h"
#include "tests/memory/FailingMalloc.h"
#include "tests/structure/SampleUnit.h"
#include "tests/support/Texts.h"

namespace {

using vxJson::Value;

/// Runs an operation in which an allocation may fail. Returns whether it completed.
using Attempt = std::function<bool(const std::function<void()>&)>;

/// Calls `test` with an attempt in which the first, the second, ... allocation fails, until the
/// operation completes. The test prepares the input and checks the state after the attempt.
void FailEachAllocation(const std::function<void(const Attempt&)>& test) {
    bool done = false;
    for (long failing = 1; !done; ++failing) {
        SCOPED_TRACE("allocation " + std::to_string(failing) + " fails");
        const Attempt attempt = [&](const std::function<void()>& operation) {
            failingMalloc.untilFailure = failing;
            try {
                operation();
                done = true;
                EXPECT_GT(failingMalloc.untilFailure, 0) << "the failure was not reported";
            } catch (const std::bad_alloc&) {
                EXPECT_EQ(failingMalloc.untilFailure, 0);
            }
            failingMalloc.untilFailure = 0;
            return done;
        };
        const long before = failingMalloc.live;
        test(attempt);
        if (testing::Test::HasFailure()) return;
        ASSERT_EQ(failingMalloc.live, before) << "memory was leaked";
    }
}

/// Returns `count` repetitions of `head`, then `inside`, then as many of `tail`.
std::string Nest(std::size_t count, const std::string& head, const std::string& inside = "",
                 const std::string& tail = "") {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) text += head;
    text += inside;
    for (std::size_t i = 0; i < count; ++i) text += tail;
    return text;
}

/// A read of input, which is made of packed bytes in hexadecimal digits.
using ReadInput = void (*)(const std::string& input);

void ReadPackedHeader(const std::string& input) {
    std::string name;
    Value schema;
    int offset = 0;
    CDEStructureDataHelper::GetBinaryDataInfo(input, name, schema, offset);
    EXPECT_EQ(offset, static_cast<int>(input.size()));
    EXPECT_FALSE(schema.isNull());
}

void ReadText(const std::string& input) {
    EXPECT_FALSE(vxJson::Parse(input).isNull());
}

void ReadPackedValue(const std::string& input) {
    static const Value schema = Json(R"([{"name":"n","type":1,"index":0}])");
    static const Value offsets = Json("[0]");
    rapidjson::Document document;
    CDEStructureDataHelper::ParseBinaryDataToJson(input.data(), static_cast<int>(input.size()),
                                                  schema, offsets, Value(), document);
    EXPECT_TRUE(document.IsArray() && document.Size() == 1);
}

void ReadBson(const std::string& input) {
    EXPECT_FALSE(dataengine::bson::Decode(input.data(), input.size()).empty());
}

/// Returns a packed array of `count` elements.
std::string PackedArray(std::size_t count, const std::string& element) {
    return Hex("dd") + BigEndian(count, 4) + Nest(count, Hex(element));
}

/// Returns a BSON document with an array of `count` elements, whose keys are not checked.
std::string BsonArray(std::size_t count, const std::string& element) {
    const auto document = [](const std::string& elements) {
        std::string size = BigEndian(elements.size() + 5, 4);
        std::reverse(size.begin(), size.end());
        return size + elements + std::string(1, '\0');
    };
    return document(Hex("04 6100") + document(Nest(count, Hex(element))));
}

// The inputs that take most memory at each entry: many small containers and elements.
TEST(Memory, InputTakesAtMost200TimesItsSize) {
    constexpr double kMostPerByte = 200;
    std::vector<std::tuple<const char*, ReadInput, std::string>> rows;
    // Vectors that double take most just after they have grown.
    for (const std::size_t n : {16385u, 24000u, 32000u}) {
        const std::string head = Hex("01 a16e");
        const std::string number = Hex("cb 3ff8000000000000");
        for (const std::string& schema :
             {Nest(n, Hex("81 a0"), Hex("c0")), Nest(n, Hex("91"), Hex("c0")), PackedArray(n, "80"),
              PackedArray(n, "90"), PackedArray(n, "c0"), PackedArray(n, "81 a0 c0"),
              PackedArray(n, "83 a0c0 a161c0 a162c0")}) {
            rows.emplace_back("header", ReadPackedHeader, head + schema);
            rows.emplace_back("header by text", ReadPackedHeader,
                              head + Hex("92") + number + schema);
        }
        for (const char* element : {"80", "90", "c0", "91c0", "81a0c0"})
            rows.emplace_back("packed value", ReadPackedValue, PackedArray(n, element));
        rows.emplace_back("packed value", ReadPackedValue, Nest(n, Hex("91"), Hex("c0")));
        for (const char* element : {"ff00", "0a00", "0600", "0300 0500000000"})
            rows.emplace_back("BSON", ReadBson, BsonArray(n, element));
        rows.emplace_back("text", ReadText, Nest(n, "[", "", "]"));
        rows.emplace_back("text", ReadText, Nest(n, "{\"\":", "0", "}"));
        for (const char* element : {"0,", "[],", "{},", "\"\","})
            rows.emplace_back("text", ReadText, "[" + Nest(n, element) + "0]");
    }
    for (const auto& [entry, read, input] : rows) {
        failingMalloc.peak = failingMalloc.bytes;
        const long before = failingMalloc.bytes;
        read(input);
        const double perByte =
            static_cast<double>(failingMalloc.peak - before) / static_cast<double>(input.size());
        EXPECT_LE(perByte, kMostPerByte)
            << entry << " of " << input.size()
            << " bytes: " << testing::PrintToString(input.substr(0, 24));
    }
}

/// Provides one JSON string of more than 4 GiB without holding it.
class HugeString : public std::streambuf {
  private:
    static constexpr std::streamsize kSize = (std::streamsize{1} << 32) + 12;

    std::streamsize showmanyc() override { return kSize - at_; }
    std::streamsize xsgetn(char* bytes, std::streamsize count) override {
        count = std::min(count, kSize - at_);
        std::memset(bytes, 'x', static_cast<std::size_t>(count));
        if (at_ == 0) bytes[0] = '"';
        at_ += count;
        if (at_ == kSize) bytes[count - 1] = '"';
        return count;
    }

    std::streamsize at_ = 0;
};

// Takes 4 GiB of memory and about ten seconds, unoptimised a minute.
TEST(Memory, StringOf4GiBIsNotCutOff) {
#ifndef NDEBUG
    GTEST_SKIP() << "only in optimised builds";
#endif
    HugeString buffer;
    std::istream stream(&buffer);
    Value value;
    EXPECT_FALSE(vxJson::Reader().parse(stream, value, true));
    EXPECT_TRUE(value.isNull());
}

TEST(Memory, KeyOfAnElementAllocatesNothing) {
    const Value array = Json("[1]");
    failingMalloc.untilFailure = 1;
    EXPECT_EQ(array.begin().key().size(), 0u);
    EXPECT_EQ(failingMalloc.untilFailure, 1);
    failingMalloc.untilFailure = 0;
}

TEST(Memory, ObjectReusesTheMemoryOfRemovedMembers) {
    Value object;
    for (int i = 0; i < 1000; ++i) object[std::to_string(i)];
    const long before = failingMalloc.bytes;
    for (int i = 0; i < 100000; ++i) {
        object[std::to_string(i + 1000)];
        object.removeMember(std::to_string(i));
    }
    EXPECT_LT(failingMalloc.bytes, before + 50000);
}

TEST(Memory, BsonIsEncodedOrThrows) {
    const Value document = Json(R"({"a key of many bytes":[{"b":"a string of many bytes"},[[]]]})");
    const std::string expected = dataengine::bson::Encode(document);
    FailEachAllocation([&](const Attempt& attempt) {
        std::string bytes;
        const bool done = attempt([&] { bytes = dataengine::bson::Encode(document); });
        EXPECT_EQ(bytes, done ? expected : "");
    });
}

TEST(Memory, ValueChangesAsAWholeOrNotAtAll) {
    static const Value rich = Json(R"({"array":[1,2.5,null,"a string of many bytes",[[],{}]],
        "a key of many bytes":{"a":{"b":"another string of many bytes"}}})");
    const struct {
        const char* operation;
        Value before;
        void (*change)(Value&);
    } rows[] = {
        {"copy assignment", Json(R"(["an old string of many bytes"])"),
         [](Value& value) { value = rich; }},
        {"a first member", Value(), [](Value& value) { value["a key of many bytes"]; }},
        {"append", Json("[1]"), [](Value& value) { value.append(rich); }},
        {"a first element", Value(), [](Value& value) { value.append(1); }},
        {"nulls before an element", Value(), [](Value& value) { value[9]; }},
        {"a member moved to another one", Json(R"({"a":[1],"b":2})"),
         [](Value& value) { value["a"].append(std::move(value["b"])); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.operation);
        Value after = row.before;
        row.change(after);
        FailEachAllocation([&](const Attempt& attempt) {
            Value value = row.before;
            const bool done = attempt([&] { row.change(value); });
            EXPECT_EQ(value, done ? after : row.before);
            row.change(value = row.before);
            EXPECT_EQ(value, after);
        });
    }
}

TEST(Memory, LoadKeepsTheFieldsAfterTheFailure) {
    const char* const keys[] = {"devId", "name", "type", "sourceType", "param", "props", "md5"};
    Value old;
    Value fresh;
    for (const char* key : keys) {
        old[key] = std::string("an old string of many bytes for ") + key;
        fresh[key] = std::string("a fresh string of many bytes for ") + key;
    }
    FailEachAllocation([&](const Attempt& attempt) {
        CDEDeviceMetadata metadata;
        metadata.LoadFromJson(old);
        bool loaded = attempt([&] { metadata.LoadFromJson(fresh); });
        Value shown;
        metadata.SaveToJson(shown);
        for (auto key = std::rbegin(keys); key != std::rend(keys); ++key) {
            loaded = loaded || shown[*key] == fresh[*key];
            EXPECT_EQ(shown[*key], loaded ? fresh[*key] : old[*key]);
        }
    });
}

/// A pool that allocates each block separately instead of in chunks of 64 KiB.
struct SmallPool {
    rapidjson::Document::AllocatorType pool{1};
};

/// A document with such a pool.
struct SmallDocument : SmallPool, rapidjson::Document {
    SmallDocument() : rapidjson::Document(&pool) {}
};

/// Decodes a leaf and a table whose values allocate: long strings, nested containers, and a bin and
/// a float that need the text route.
void Decode(rapidjson::Document& document) {
    static const Value schema = Json(R"([{"name":"hostname","type":1,"index":0},
        {"name":"ifTable","type":11,"index":1,"hashSort":true,"hashColumns":["ifName"],
         "column":[{"name":"ifName","type":1,"index":0},{"name":"speed","type":3,"index":1}],
         "attributes":[{"name":"vrf","type":1,"index":2}]}])");
    static const Value offsets = Json("[0,[27,53,0]]");
    static const Value selection = Json(R"(["hostname",{"table":"ifTable"}])");
    static const std::string payload =
        Hex("ba") + std::string(26, 'v') + Hex("92 81 a1 6b 92 01 c0 b2") + std::string(18, 'c') +
        Hex("92 cb 7e37e43c8800759c c4 15 2261222c") + std::string(17, 'b');
    CDEStructureDataHelper::ParseBinaryDataToJson(payload.data(), static_cast<int>(payload.size()),
                                                  schema, offsets, selection, document);
}

TEST(Memory, DecoderKeepsTheItemsBeforeTheFailure) {
    SmallDocument expected;
    Decode(expected);
    ASSERT_EQ(expected.Size(), 2u) << Text(expected);
    FailEachAllocation([&](const Attempt& attempt) {
        SmallDocument document;
        const bool done = attempt([&] { Decode(document); });
        ASSERT_TRUE(document.IsArray());
        EXPECT_EQ(done, document.Size() == expected.Size());
        for (rapidjson::SizeType i = 0; i < document.Size(); ++i) {
            EXPECT_EQ(Text(document[i]), Text(expected[i]));
        }
        Decode(document);
        EXPECT_EQ(Text(document), Text(expected));
    });
}

// The float sends the whole schema through text.
TEST(Memory, HeaderReplacesTheSchemaAsAWholeOrNotAtAll) {
    const std::string blob = Hex("01 d9") + '\x20' + std::string(32, 'n') +
                             Hex("92 ca3f000000 d9") + '\x20' + std::string(32, 's');
    FailEachAllocation([&](const Attempt& attempt) {
        std::string name = "untouched";
        Value schema = "untouched";
        int offset = 4711;
        const bool done =
            attempt([&] { CDEStructureDataHelper::GetBinaryDataInfo(blob, name, schema, offset); });
        EXPECT_EQ(schema.isArray(), done);
        EXPECT_EQ(schema == Value("untouched"), !done);
        EXPECT_EQ(offset, done ? static_cast<int>(blob.size()) : 4711);
    });
}

// A failed Open or Decode must not leave a header, a plan or offsets that are only in part right.
TEST(Memory, ReaderDecodesAfterTheFailure) {
    const std::string frame = SampleUnit::Written().Frame();
    const auto read = [&](dataengine::PackedFrameReader& reader, rapidjson::Document& document) {
        EXPECT_TRUE(reader.Open(frame));
        EXPECT_TRUE(reader.Decode(document));
    };
    dataengine::PackedFrameReader reference;
    SmallDocument expected;
    read(reference, expected);
    FailEachAllocation([&](const Attempt& attempt) {
        dataengine::PackedFrameReader reader;
        attempt([&] {
            SmallDocument document;
            read(reader, document);
        });
        SmallDocument document;
        read(reader, document);
        EXPECT_EQ(Text(document), Text(expected));
    });
}

TEST(Memory, RenamingKeepsTheItemsBeforeTheFailure) {
    const std::map<DDKey, DDKey> mapping = {
        {{"", "a wanted name of many bytes"}, {"p", "hostname"}},
        {{"", "a wanted table.a wanted column"}, {"p", "ifTable.speed"}}};
    const auto rename = [&](rapidjson::Document& document, std::vector<std::string>& items) {
        CDEStructureDataHelper::PostDataProcessing(mapping, "p", document, items);
    };
    SmallDocument renamed;
    Decode(renamed);
    std::vector<std::string> expected = {"an item of many bytes from before"};
    rename(renamed, expected);
    ASSERT_EQ(expected.size(), 3u);
    FailEachAllocation([&](const Attempt& attempt) {
        SmallDocument document;
        Decode(document);
        std::vector<std::string> items = {expected[0]};
        const bool done = attempt([&] { rename(document, items); });
        EXPECT_EQ(done, items.size() == expected.size());
        for (std::size_t i = 0; i < items.size(); ++i) EXPECT_EQ(items[i], expected[i]);
    });
}

/// Returns the saved form of a result whose document is too large for one chunk of its pool.
Value Saved(char letter) {
    Value saved = Json(R"({"time":5,"flag":6,"resultMetaDataOnly":{"day":1,"type":"t"}})");
    saved["resultMetaDataOnly"]["param"] = "a string of many bytes " + std::string(1, letter);
    saved["data"] = "[{\"name\":[1,{\"a\":2.5}]},\"" + std::string(70000, letter) + "\"]";
    return saved;
}

/// Returns the saved form of a result, with only the first bytes of its document.
Value Shown(const CDEQueryResultStructureData& result) {
    Value target = Json(R"({"resultMetaDataOnly":{"old":1}})");
    result.SaveToJson(target);
    target["data"] = target["data"].asBinary().substr(0, 40);
    return target;
}

TEST(Memory, ResultKeepsItsDocument) {
    const auto loaded = [](char letter) {
        auto result = std::make_unique<CDEQueryResultStructureData>();
        result->LoadFromJson(Saved(letter));
        return result;
    };
    const Value a = Shown(*loaded('a'));
    const Value b = Shown(*loaded('b'));
    const Value source = Saved('b');
    FailEachAllocation([&](const Attempt& attempt) {
        const auto result = loaded('a');
        const bool done = attempt([&] { result->LoadFromJson(source); });
        const Value shown = Shown(*result);
        EXPECT_TRUE(shown["data"] == b["data"] || (!done && shown["data"] == a["data"]));
    });
    FailEachAllocation([&](const Attempt& attempt) {
        const auto result = loaded('a');
        std::unique_ptr<CDEQueryResultStructureData> moved;
        const bool done = attempt(
            [&] { moved = std::make_unique<CDEQueryResultStructureData>(std::move(*result)); });
        EXPECT_EQ(Shown(done ? *moved : *result), a);
    });
    FailEachAllocation([&](const Attempt& attempt) {
        const auto from = loaded('b');
        const auto to = loaded('a');
        const bool done = attempt([&] { *to = std::move(*from); });
        EXPECT_EQ(Shown(*to), done ? b : a);
        EXPECT_EQ(Shown(done ? *to : *from), b);
    });
}

TEST(Memory, WriterAddsAllItemsOrNone) {
    SmallDocument document;
    Decode(document);
    const Value cells = Json(R"(["a cell of many bytes",[{"a key of many bytes":1.5}]])");
    using Writer = dataengine::PackedFrameWriter;
    const std::function<void(Writer&, Writer::Table&)> additions[] = {
        [&](auto& writer, auto&) { writer.AddTable("a table of many bytes", true, {"ifName"}); },
        [&](auto&, auto& table) { table.AddColumn("a column of many bytes", 1, cells); },
        [&](auto& writer, auto&) { writer.AddItems(document); }};
    for (const auto& add : additions) {
        FailEachAllocation([&](const Attempt& attempt) {
            Writer writer("a unit of many bytes");
            Writer::Table table = writer.AddTable("ifTable", true, {});
            const std::string before = writer.Frame();
            const bool done = attempt([&] { add(writer, table); });
            EXPECT_EQ(writer.Frame() == before, !done);
        });
    }
}

TEST(Memory, FailedSaveKeepsTheOldEntry) {
    CDEQueryResultStructureData result;
    result.LoadFromJson(Saved('a'));
    const Value fresh = Shown(result)["resultMetaDataOnly"];
    const Value old = Json(R"({"an old key of many bytes":1})");
    FailEachAllocation([&](const Attempt& attempt) {
        Value target;
        target["resultMetaDataOnly"] = old;
        const bool done = attempt([&] { result.SaveToJson(target); });
        EXPECT_EQ(target["resultMetaDataOnly"], done ? fresh : old);
    });
}

}  // namespace
