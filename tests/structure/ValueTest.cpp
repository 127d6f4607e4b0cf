#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <msgpack.hpp>

#include "tests/structure/Decode.h"

namespace {

TEST(Value, BecomesWhatItsTextIs) {
    const struct {
        const char* what;
        const char* packed;
        const char* json;
    } rows[] = {
        {"nil", "c0", "null"},
        {"true", "c3", "true"},
        {"false", "c2", "false"},
        {"positive fixnum", "7f", "127"},
        {"greatest uint64", "cf ff ff ff ff ff ff ff ff", "18446744073709551615"},
        {"least int64", "d3 80 00 00 00 00 00 00 00", "-9223372036854775808"},
        {"negative fixnum", "e0", "-32"},
        {"positive number in the signed form", "d0 05", "5"},
        {"whole double stays one", "cb 40 14 00 00 00 00 00 00", "5.0"},
        {"two decimals", "cb 40 09 21 f9 f0 1b 86 6e", "3.14"},
        {"float32", "ca 40 48 f5 c3", "3.14"},
        {"negative zero", "cb bf 50 62 4d d2 f1 a9 fc", "-0.0"},
        {"1.005 lies below the half", "cb 3f f0 14 7a e1 47 ae 14", "1.0"},
        {"1.115 too, though its product with 100 lies above", "cb 3f f1 d7 0a 3d 70 a3 d7", "1.11"},
        {"0.125, a tie, goes to even", "cb 3f c0 00 00 00 00 00 00", "0.12"},
        {"0.375, a tie, goes to even", "cb 3f d8 00 00 00 00 00 00", "0.38"},
        {"least subnormal", "cb 00 00 00 00 00 00 00 01", "0.0"},
        {"1e21", "cb 44 4b 1a e4 d6 e2 ef 50", "1e21"},
        {"NaN", "cb 7f f8 00 00 00 00 00 00", "null"},
        {"infinity", "ca 7f 80 00 00", "null"},
        {"empty str", "a0", "\"\""},
        {"empty str 32", "db 00 00 00 00", "\"\""},
        {"empty bin", "c4 00", "\"\""},
        {"str keeps every byte", "a7 22 5c 2f 00 7f 1f c3", "\"\\\"\\\\/\\u0000\x7f\\u001F\xc3\""},
        {"long str", "b0 30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66", "\"0123456789abcdef\""},
        {"clean bin", "c4 02 61 62", "\"ab\""},
        {"bin with bytes above 126", "c4 02 7f ff", "\"\x7f\xff\""},
        {"bin with a zero byte", "c4 03 61 00 62", "null"},
        {"bin with a line feed", "c4 01 0a", "null"},
        {"bin of a quotation mark", "c4 01 22", "null"},
        {"bin with an escape", "c4 02 5c 6e", "\"\\n\""},
        {"bin with an escaped quotation mark", "c4 04 61 5c 22 62", "\"a\\\"b\""},
        {"bin with an escaped zero", "c4 06 5c 75 30 30 30 30", "\"\\u0000\""},
        {"bin with an unknown escape", "c4 02 5c 71", "null"},
        {"bin that ends in a backslash", "c4 02 61 5c", "null"},
        {"bin that closes and opens quotation marks", "c4 05 61 22 2c 22 62", "null"},
        {"the same in an array, among others", "93 01 c4 05 61 22 2c 22 62 02", "null"},
        {"a backslash that would eat the next mark", "92 c4 01 5c c4 02 2c 22", "null"},
        {"a mark and blanks", "c4 03 61 22 20", "null"},
        {"ext", "d4 05 00", "null"},
        {"ext deep inside", "92 01 81 a1 61 91 c7 00 05", "null"},
        {"empty array and map", "92 90 80", "[[],{}]"},
        {"repeated keys stay", "82 a1 61 01 a1 61 02", R"({"a":1,"a":2})"},
        {"bin key", "81 c4 01 6b 01", R"({"k":1})"},
        {"bin key with an escape", "81 c4 02 5c 6e 01", R"({"\n":1})"},
        {"bin key that is no string", "81 c4 01 22 01", "null"},
        {"integer key", "81 01 02", "null"},
        {"float key beyond exact scaling", "81 cb 44 4b 1a e4 d6 e2 ef 50 01", "null"},
        {"nil key", "81 c0 02", "null"},
        {"array key", "81 91 a1 61 02", "null"},
        {"map key", "81 81 a1 61 01 02", "null"},
        {"bytes behind the value", "01 c1", "1"},
    };
    for (const auto& row : rows) {
        rapidjson::Document document;
        EXPECT_EQ(Text(DecodeLeaf(Hex(row.packed), document)), row.json) << row.what;
    }
}

/// What printf and a correctly working number parse make of `value`.
double Printed(double value) {
    char text[400];
    std::snprintf(text, sizeof text, "%.2f", value);
    rapidjson::Document document;
    document.Parse(text);
    return document.GetDouble();
}

std::string Packed(double value) {
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    std::string packed = Hex("cb");
    for (int shift = 56; shift >= 0; shift -= 8) packed += static_cast<char>(bits >> shift);
    return packed;
}

TEST(Value, RoundsAtTheEdgesOfExactScalingAsTextDoes) {
    const double powers[] = {1,
                             64,
                             9007199254740991.0,
                             90071992547409.92,
                             900719925474099.1,
                             900719925474099.25,
                             4503599627370496.5,
                             1e15,
                             1e17,
                             1e22,
                             1e300};
    for (const double power : powers) {
        for (const double sign : {1.0, -1.0}) {
            double value = std::nextafter(power * sign, 0);
            for (int step = 0; step < 3;
                 ++step, value = std::nextafter(value,
                                                sign * std::numeric_limits<double>::infinity())) {
                SCOPED_TRACE(value);
                rapidjson::Document document;
                const auto& decoded = DecodeLeaf(Packed(value), document);
                ASSERT_TRUE(decoded.IsDouble());
                EXPECT_EQ(decoded.GetDouble(), Printed(value));
                EXPECT_EQ(std::signbit(decoded.GetDouble()), std::signbit(value));
            }
        }
    }
}

TEST(Value, RaisesWhatIsBehindASpoiledElement) {
    rapidjson::Document document;
    EXPECT_THROW(DecodeLeaf(Hex("92 d4 05 00"), document), msgpack::insufficient_bytes);
    EXPECT_THROW(DecodeLeaf(Hex("92 d4 05 00 c1"), document), msgpack::parse_error);
    EXPECT_THROW(DecodeLeaf(Hex("82 01 01 a1 61"), document), msgpack::insufficient_bytes);
    EXPECT_THROW(DecodeLeaf(Hex("95 01 c1"), document), msgpack::parse_error);
}

}  // namespace
