#include <gtest/gtest.h>
#include <sys/resource.h>

#include <msgpack.hpp>

#include "structure/RenderJson.h"
#include "tests/structure/Decode.h"
#include "tests/structure/SampleUnit.h"

namespace {

constexpr std::size_t kDepth = 1000000;

std::string Repeat(const std::string& bytes, std::size_t count) {
    std::string repeated;
    repeated.reserve(bytes.size() * count);
    for (std::size_t i = 0; i < count; ++i) repeated += bytes;
    return repeated;
}

TEST(Hostile, DepthIsBoundedByMemoryAlone) {
    const struct {
        const char* what;
        std::string open;
        std::string close;
        std::string openText;
        std::string closeText;
    } rows[] = {
        {"arrays", Hex("91"), "", "[", "]"},
        {"maps", Hex("81 a1 6b"), "", "{\"k\":", "}"},
        {"arrays that go on behind", Hex("92"), Hex("02"), "[", ",2]"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const std::string packed = Repeat(row.open, kDepth) + Hex("01") + Repeat(row.close, kDepth);
        const std::string expected =
            Repeat(row.openText, kDepth) + "1" + Repeat(row.closeText, kDepth);

        rapidjson::Document document;
        dataengine::JsonBuffer buffer;
        dataengine::JsonWriter writer(buffer);
        EXPECT_TRUE(dataengine::RenderJson(DecodeLeaf(packed, document), writer));
        EXPECT_TRUE(buffer.GetString() == expected);

        std::vector<std::string> items;
        CDEStructureDataHelper::PostDataProcessing({{DDKey("", "deep"), DDKey("p", "leaf")}}, "p",
                                                   document, items);
        EXPECT_TRUE(items.at(0) == R"({"type":1,"name":"deep","value":)" + expected + "}");

        std::string name;
        vxJson::Value schema;
        int offset = 0;
        EXPECT_TRUE(
            CDEStructureDataHelper::GetBinaryDataInfo(Hex("01 a0") + packed, name, schema, offset));
        EXPECT_TRUE(schema.toString(false) == expected);
        EXPECT_EQ(static_cast<std::size_t>(offset), packed.size() + 2);
    }
}

TEST(Hostile, AKeyAsDeepIsReadToItsEnd) {
    rapidjson::Document document;
    EXPECT_TRUE(
        DecodeLeaf(Repeat(Hex("81"), kDepth) + Repeat(Hex("01"), kDepth + 1), document).IsNull());
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr rlim_t kAddressSpace = RLIM_INFINITY;  // the sanitizers' shadow alone is larger
#else
constexpr rlim_t kAddressSpace = rlim_t{1} << 30;
#endif

/// Ends the process, which is one of its own, with 0 if the body went well within the limit.
template <typename Body>
[[noreturn]] void ExitWithinAddressSpace(const Body& body) {
    const rlimit most{kAddressSpace, kAddressSpace};
    setrlimit(RLIMIT_AS, &most);
    body();
    std::_Exit(testing::Test::HasFailure() ? 1 : 0);
}

/// A container that announces `head`, alone and inside other containers.
void ExpectInsufficient(const std::string& head) {
    for (const char* around : {"", "92", "81 a1 6b", "93 01 a1 61", "81"}) {
        const std::string packed = Hex(around) + head;
        rapidjson::Document document;
        EXPECT_THROW(DecodeLeaf(packed, document), msgpack::insufficient_bytes);
        // An element takes a byte at least, and 16 in the pool, whose chunks are 64 KiB.
        EXPECT_LE(document.GetAllocator().Capacity(),
                  (std::size_t{128} << 10) + 16 * packed.size());
        for (const char* before : {"", "01", "01 a1 6e"}) {
            std::string name;
            vxJson::Value schema;
            int offset;
            EXPECT_THROW(CDEStructureDataHelper::GetBinaryDataInfo(Hex(before) + packed, name,
                                                                   schema, offset),
                         msgpack::insufficient_bytes);
        }
    }
}

void ExpectDeclaredSizesTakeNothing() {
    for (const char* kind : {"dd", "df", "db", "c6", "c9"}) {
        for (const char* size : {"ff ff ff ff", "7f ff ff ff", "10 00 00 00", "00 00 10 00"}) {
            ExpectInsufficient(Hex(kind) + Hex(size) + Hex("01"));
        }
    }
    // Each container alone could be there, all of them together can't.
    const std::string behind(std::size_t{1} << 20, 1);
    ExpectInsufficient(Repeat(Hex("dd 00 10 00 00"), 300) + behind);
    ExpectInsufficient(Repeat(Hex("df 00 08 00 00 a1 6b"), 300) + behind);
}

TEST(Hostile, ADeclaredSizeTakesNothingBeforeItsBytesAreThere) {
    EXPECT_EXIT(ExitWithinAddressSpace(ExpectDeclaredSizesTakeNothing), testing::ExitedWithCode(0),
                "");
}

/// Packed values that hold every kind of token.
const std::string kSamples[] = {
    SampleUnit::Header(),
    SampleUnit::Payload().substr(3, 13),
    SampleUnit::Payload().substr(16, 13),
    Hex("9c c0 c2 c3 cc ff cd ff ff ce ff ff ff ff cf ff ff ff ff ff ff ff ff d0 80 d1 80 00"
        "d2 80 00 00 00 d3 80 00 00 00 00 00 00 00 d9 02 61 62"),
    Hex("98 ca 40 48 f5 c3 da 00 01 61 db 00 00 00 01 61 c4 01 61 c5 00 01 61 c6 00 00 00 01 61"
        "dc 00 01 90 dd 00 00 00 01 80"),
    Hex("96 de 00 01 a1 61 01 df 00 00 00 01 a1 61 01 d4 01 02 d8 01 02 03 04 05 06 07 08 09 0a 0b"
        "0c 0d 0e 0f 10 11 c7 02 05 01 02 c8 00 01 05 01"),
};

TEST(Hostile, EveryTruncationRaisesInsufficientBytes) {
    for (const std::string& sample : kSamples) {
        for (std::size_t length = 0; length < sample.size(); ++length) {
            // The header holds three objects: what is cut there may end the third alone.
            if (&sample == &kSamples[0]) {
                std::string name;
                vxJson::Value schema;
                int offset;
                EXPECT_THROW(CDEStructureDataHelper::GetBinaryDataInfo(sample.substr(0, length),
                                                                       name, schema, offset),
                             msgpack::insufficient_bytes);
                continue;
            }
            rapidjson::Document document;
            EXPECT_THROW(DecodeLeaf(sample.substr(0, length), document),
                         msgpack::insufficient_bytes)
                << length;
        }
    }
}

TEST(Hostile, AByteThatStartsNothingRaisesParseError) {
    const std::string elements[] = {"",
                                    Hex("01"),
                                    Hex("a1 61"),
                                    Hex("c4 01 22"),
                                    Hex("d4 05 00"),
                                    Hex("90"),
                                    Hex("81 01 02"),
                                    Hex("cb 7f f8 00 00 00 00 00 00")};
    for (const std::string& first : elements) {
        const std::string packed = Hex("9f") + first + Hex("c1") + std::string(20, 1);
        rapidjson::Document document;
        EXPECT_THROW(DecodeLeaf(packed, document), msgpack::parse_error);
    }
}

}  // namespace
