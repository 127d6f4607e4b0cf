#include <sys/resource.h>

#include "contracts/detail/rapidjson/RenderJson.h"
#include "tests/structure/Decode.h"
#include "tests/structure/SampleUnit.h"
#include "tests/support/BothDecoders.h"
#include "tests/support/Rows.h"

namespace {

constexpr std::size_t kDepth = 1000000;

std::string Repeat(const std::string& bytes, std::size_t count) {
    std::string repeated;
    repeated.reserve(bytes.size() * count);
    for (std::size_t i = 0; i < count; ++i) repeated += bytes;
    return repeated;
}

TEST(Hostile, DepthIsBoundedByMemoryOnly) {
    const struct {
        std::string open, close, openText, closeText;
    } rows[] = {{"\x91", "", "[", "]"},
                {Hex("81 a1 6b"), "", "{\"k\":", "}"},
                {"\x92", "\x02", "[", ",2]"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.openText + row.closeText);
        const std::string packed = Repeat(row.open, kDepth) + Hex("01") + Repeat(row.close, kDepth);
        const std::string expected =
            Repeat(row.openText, kDepth) + "1" + Repeat(row.closeText, kDepth);

        rapidjson::Document document;
        dataengine::detail::JsonBuffer buffer;
        dataengine::detail::JsonWriter writer(buffer);
        ASSERT_EQ(DecodeLeaf(packed, document), "true");
        EXPECT_TRUE(dataengine::detail::RenderJson(document[0]["value"], writer));
        EXPECT_TRUE(buffer.GetString() == expected);

        std::vector<std::string> items;
        CDEStructureDataHelper::PostDataProcessing({{DDKey("", "deep"), DDKey("p", "leaf")}}, "p",
                                                   document, items);
        EXPECT_TRUE(items.at(0) == R"({"type":1,"name":"deep","value":)" + expected + "}");

        const Header header = ReadHeader(Hex("01 a0") + packed);
        EXPECT_TRUE(header.schema.toString(false) == expected);
        EXPECT_EQ(static_cast<std::size_t>(header.offset), packed.size() + 2);
    }
}

TEST(Hostile, DeeplyNestedMapKeyYieldsNull) {
    rapidjson::Document document;
    DecodeLeaf(Repeat(Hex("81"), kDepth) + Repeat(Hex("01"), kDepth + 1), document);
    EXPECT_TRUE(document[0]["value"].IsNull());
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr rlim_t kAddressSpace = RLIM_INFINITY;  // the shadow memory of sanitizers is larger
#else
constexpr rlim_t kAddressSpace = rlim_t{1} << 30;
#endif

/// Runs `body` with limited memory and 60 seconds, and ends the process with 0 if no check failed.
template <typename Body>
[[noreturn]] void ExitWithinLimits(const Body& body) {
    const rlimit most{kAddressSpace, kAddressSpace};
    setrlimit(RLIMIT_AS, &most);
    const rlimit seconds{60, 60};
    setrlimit(RLIMIT_CPU, &seconds);
    body();
    std::_Exit(testing::Test::HasFailure() ? 1 : 0);
}

/// Expects the same of a container with this head by itself and inside other containers.
void ExpectInsufficient(const std::string& head) {
    for (const char* around : {"", "92", "81 a1 6b", "93 01 a1 61", "81"}) {
        const std::string packed = Hex(around) + head;
        rapidjson::Document document;
        EXPECT_EQ(DecodeLeaf(packed, document), "insufficient_bytes");
        // An element takes at least one byte, and a value in the pool, whose chunks are 64 KiB.
        EXPECT_LE(document.GetAllocator().Capacity(),
                  (std::size_t{128} << 10) + sizeof(rapidjson::Value) * packed.size());
        for (const char* before : {"", "01", "01 a1 6e"})
            EXPECT_EQ(ReadHeader(Hex(before) + packed).ending, "insufficient_bytes");
    }
}

void ExpectDeclaredSizesAllocateNothing() {
    for (const char* kind : {"dd", "df", "db", "c6", "c9"})
        for (const char* size : {"ff ff ff ff", "7f ff ff ff", "10 00 00 00", "00 00 10 00"})
            ExpectInsufficient(Hex(kind) + Hex(size) + Hex("01"));
    // The bytes suffice for each container, but not for all of them.
    const std::string after(std::size_t{1} << 20, 1);
    ExpectInsufficient(Repeat(Hex("dd 00 10 00 00"), 300) + after);
    ExpectInsufficient(Repeat(Hex("dd 00 10 00 00 91"), 300) + after);
    ExpectInsufficient(Repeat(Hex("df 00 08 00 00 a1 6b"), 300) + after);
}

TEST(Hostile, DeclaredSizesAllocateNothing) {
    EXPECT_EXIT(ExitWithinLimits(ExpectDeclaredSizesAllocateNothing), testing::ExitedWithCode(0),
                "");
}

void ExpectColumnsToCostTheirOwnNames() {
    rapidjson::Document document;
    document.Parse(R"([{"type":11,"column":[]}])");
    const std::string table(20000000, 't');
    document[0].AddMember("name", rapidjson::StringRef(table.data(), table.size()),
                          document.GetAllocator());
    for (int i = 0; i < 100000; ++i) {
        rapidjson::Value column(rapidjson::kObjectType);
        column.AddMember("name", "c", document.GetAllocator());
        document[0]["column"].PushBack(column, document.GetAllocator());
    }
    std::vector<std::string> items;
    CDEStructureDataHelper::PostDataProcessing(
        {{DDKey("", "T" + table + ".d"), DDKey("p", table + ".c")}}, "p", document, items);
    EXPECT_EQ(document[0]["name"].GetStringLength(), table.size() + 1);
    EXPECT_STREQ(document[0]["column"][99999]["name"].GetString(), "d");
}

TEST(Hostile, RenamedColumnsCostTheirOwnNames) {
    EXPECT_EXIT(ExitWithinLimits(ExpectColumnsToCostTheirOwnNames), testing::ExitedWithCode(0), "");
}

TEST(Hostile, EveryTruncationThrowsInsufficientBytes) {
    const std::string header = SampleUnit::Header();
    for (std::size_t length = 0; length < header.size(); ++length)
        EXPECT_EQ(ReadHeader(header.substr(0, length)).ending, "insufficient_bytes") << length;

    // Every form of every kind of value.
    for (const auto& row : Rows(R"(
        9c c0 c2 c3 cc ff cd ff ff ce ff ff ff ff cf ff ff ff ff ff ff ff ff d0 80 d1 80 00 d2 80 00 00 00 d3 80 00 00 00 00 00 00 00 d9 02 61 62
        99 cb 40 04 00 00 00 00 00 00 ca 40 48 f5 c3 da 00 01 61 db 00 00 00 01 61 c4 01 61 c5 00 01 61 c6 00 00 00 01 61 dc 00 01 90 dd 00 00 00 01 80
        96 de 00 01 a1 61 01 df 00 00 00 01 a1 61 01 d4 01 02 d8 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 c7 02 05 01 02 c8 00 01 05 01)")) {
        const std::string packed = Hex(row[0]);
        rapidjson::Document document;
        EXPECT_EQ(DecodeLeaf(packed, document), "true") << row[0];
        for (std::size_t length = 0; length < packed.size(); ++length)
            EXPECT_EQ(DecodeLeaf(packed.substr(0, length), document), "insufficient_bytes")
                << length << " bytes of " << row[0];
    }
}

}  // namespace
