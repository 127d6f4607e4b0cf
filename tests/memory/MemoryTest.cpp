#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <new>

#include "descriptors/CDEDeviceMetadata.h"
#include "query/CDEQueryResultStructureData.h"
#include "structure/CDEStructureDataHelper.h"
#include "structure/PackedFrameWriter.h"
#include "tests/memory/FailingMalloc.h"
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
