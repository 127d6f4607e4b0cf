#include <VxUtil/vxJson.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <sstream>
#include <streambuf>
#include <vector>

using vxJson::Value;

namespace {

// The value of a text, compact; "-" if it doesn't parse, which must also leave null.
std::string Reprint(const std::string& text, bool extended = false) {
    std::istringstream input(text);
    Value value = "old";
    if (vxJson::Reader().parse(input, value, extended)) return value.toString(false);
    EXPECT_TRUE(value.isNull()) << text;
    return "-";
}

Value Parse(const std::string& text, bool extended) {
    std::istringstream input(text);
    Value value;
    EXPECT_TRUE(vxJson::Reader().parse(input, value, extended)) << text.substr(0, 1000);
    return value;
}

TEST(JsonText, IsWhatStoresKeep) {
    Value all;
    all["z"];
    all["yes"] = true;
    all["int"] = -12;
    all["big"] = 18446744073709551615ULL;
    all["ratio"] = 0.1;
    all["whole"] = 3.0;
    all["huge"] = 1e300;
    all["tiny"] = -5e-324;
    all["text"] = std::string("q\" b\\ s/ \b\f\n\r\t \x01\x1f\x7f \0 \xc3\xa9 \xff", 25);
    all["bytes"] = Value(std::string("\0\xff\x10", 3), vxJson::binaryKind);
    all["time"] = Value(static_cast<unsigned long long>(-1), false);
    all["list"].append(Value());
    all["list"].append(Value(vxJson::arrayKind, false));
    all["list"].append(Value(vxJson::objectKind, false));
    all["nan"] = std::nan("");
    EXPECT_EQ(all.toString(false),
              R"({"big":18446744073709551615,)"
              R"("bytes":{"$binary":{"base64":"AP8Q","subType":"00"}},"huge":1e+300,"int":-12,)"
              R"("list":[null,[],{}],"nan":null,"ratio":0.1,)"
              R"("text":"q\" b\\ s/ \b\f\n\r\t \u0001\u001F)"
              "\x7f \\u0000 \xc3\xa9 \xff\","
              R"("time":{"$date":{"$numberLong":"-1"}},"tiny":-5e-324,"whole":3.0,"yes":true,)"
              R"("z":null})");
    std::ostringstream output;
    output << all;
    EXPECT_EQ(output.str(), all.toString(false));
}

TEST(JsonText, StylesWithFourSpaces) {
    const Value value =
        Parse(R"({"b":[1,{"c":null}],"a":{},"e":[],"t":{"$date":{"$numberLong":"5"}}})", true);
    EXPECT_EQ(value.toStyledString(), R"({
    "a": {},
    "b": [
        1,
        {
            "c": null
        }
    ],
    "e": [],
    "t": {
        "$date": {
            "$numberLong": "5"
        }
    }
})");
    EXPECT_EQ(value.toString(true), value.toStyledString());
}

using std::string_literals::operator""s;

TEST(JsonText, RejectsWhatIsNotOneText) {
    const std::string texts[] = {
        "", " \t\r\n", "[1,]", "[,1]", "[1 2]", "[", "]", "[1", "[1}", "1 1", "[] x", "{}}", "[]]",
        "{\"a\":1", "{\"a\":1,}", "{\"a\"}", "{a:1}", "{1:1}", "{'a':1}", "{\"a\" 1}", "{,}",
        "{\"a\":1 \"b\":2}", "nul", "nullx", "True", "/**/1", "\xef\xbb\xbf{}", "'a'", "\v1",
        "1\0"s, "\0001"s, "\"a\0b\""s, "[1]\0[2]"s,
        // Numbers
        "01", "-01", "+1", ".5", "1.", "1.e1", "-", "1e", "1e+", "0x1", "1_0", "NaN", "Infinity",
        "-Infinity", "1e309", "-1e309", "0e999", "1.7976931348623159e308",
        "1" + std::string(309, '0'),
        // Strings
        "\"\\ud83d\"", "\"\\ud83dx\"", "\"\\ud83d\\u0041\"", "\"\\u12g4\"", "\"\\u12\"",
        "\"\\x41\"", "\"\\", "\"a", "\"", "\"\t\"", "\"\x1f\"", "\"\n\""};
    for (const std::string& text : texts) {
        EXPECT_EQ(Reprint(text), "-") << text;
        EXPECT_EQ(Reprint("{\"k\":" + text + "}"), "-") << text;
    }
}

TEST(JsonText, ReadsEveryJsonText) {
    const std::pair<const char*, const char*> rows[] = {
        {" null\n", "null"},
        {"[ 1 ,\t2\r\n]", "[1,2]"},
        {"{ }", "{}"},
        {"{\"\":0}", "{\"\":0}"},
        {R"({"b":1,"a":2})", R"({"a":2,"b":1})"},
        {R"({"a":[1],"a":{"b":2},"a":3})", R"({"a":3})"},
        {R"({"b":1,"a":2,"b":{}})", R"({"a":2,"b":{}})"},
        // Numbers
        {"-0", "0"},
        {"-0.0", "-0.0"},
        {"0e1", "0.0"},
        {"1E+5", "100000.0"},
        {"1e-2", "0.01"},
        {"18446744073709551615", "18446744073709551615"},
        {"18446744073709551616", "18446744073709551616.0"},
        {"-9223372036854775808", "-9223372036854775808"},
        {"-9223372036854775809", "-9223372036854775808.0"},
        {"123456789012345678901234567890", "1.2345678901234568e+29"},
        {"1e20", "100000000000000000000.0"},
        {"-1e21", "-1e+21"},
        {"1e-6", "0.000001"},
        {"9e-7", "9e-07"},
        {"1.7976931348623157e308", "1.7976931348623157e+308"},
        {"1e-400", "0.0"},
        {"-1e-99999", "-0.0"},
        {"1.7976931348623158e308", "1.7976931348623157e+308"},
        {"2.4703282292062328e-324", "5e-324"},
        {"4.9406564584124654e-324", "5e-324"},
        {"9007199254740993.0", "9007199254740992.0"},
        {"2.2250738585072011e-308", "2.225073858507201e-308"},
        // Strings
        {R"("\u0041\n\/\"\u0000")", R"("A\n/\"\u0000")"},
        {R"("\ud83d\ude00")", "\"\xf0\x9f\x98\x80\""},
        {"\"\x7f\xff\xc0\"", "\"\x7f\xff\xc0\""}};
    for (const auto& [text, expected] : rows) {
        EXPECT_EQ(Reprint(text), expected) << text;
        EXPECT_EQ(Reprint("[" + std::string(text) + "]"), "[" + std::string(expected) + "]");
    }
}

TEST(JsonText, TellsExtendedFormsByTheirExactShape) {
    const std::pair<const char*, Value> kinds[] = {
        {R"({"$binary":{"base64":"","subType":"00"}})", Value("", vxJson::binaryKind)},
        {R"({"$binary":{"base64":"YQ==","subType":"00"}})", Value("a", vxJson::binaryKind)},
        {R"({"$binary":{"subType":"00","base64":"YWI="}})", Value("ab", vxJson::binaryKind)},
        {R"({"$binary":{"base64":"+/8A","subType":"00"}})", Value("\xfb\xff\0", 3)},
        {R"({"$date":{"$numberLong":"0"}})", Value(0ULL, false)},
        {R"({"$date":{"$numberLong":"-9223372036854775808"}})", Value(1ULL << 63, false)},
        {R"({"$date":{"$numberLong":"9223372036854775807"}})", Value((1ULL << 63) - 1, false)}};
    for (const auto& [text, value] : kinds) {
        EXPECT_EQ(Parse(text, true), value);
        EXPECT_EQ(Parse("[" + std::string(text) + "]", true)[0], value);
        EXPECT_TRUE(Parse(text, false).isObject()) << text;
    }
    std::vector<std::string> objects = {R"({"$binary":{"base64":"YQ==","subType":0}})",
                                        R"({"$binary":{"base64":1,"subType":"00"}})",
                                        R"({"$binary":{"base64":"","subType":"00","x":1}})",
                                        R"({"$binary":{"base64":"","subType":"00"},"x":1})",
                                        R"({"$binary":"YQ=="})",
                                        R"({"$binary":{"base64":"YQ==","subType":"01"}})",
                                        R"({"$date":{"$numberLong":1}})",
                                        R"({"$date":{"$numberLong":"1"},"x":1})",
                                        R"({"$date":["1"]})",
                                        R"({"$numberLong":"1"})"};
    for (const char* base64 : {"YQ", "YR==", "YWK=", "Y===", "====", "YQ==YQ==", "Y Q=", "_-__"}) {
        objects.push_back(R"({"$binary":{"base64":")" + std::string(base64) +
                          R"(","subType":"00"}})");
    }
    for (const char* number : {"9223372036854775808", "-0", "+1", "01", "1 ", ""}) {
        objects.push_back(R"({"$date":{"$numberLong":")" + std::string(number) + R"("}})");
    }
    for (const std::string& text : objects) {
        EXPECT_TRUE(Parse(text, true).isObject()) << text;
        EXPECT_EQ(Reprint(text, true), text);
    }
}

class RandomValues {
  public:
    Value Next(int depth) {
        switch (random_() % (depth > 0 ? 11 : 8)) {
            case 0:
                return Value();
            case 1:
                return (random_() & 1) != 0;
            case 2:
                return static_cast<std::int64_t>(random_()) >> (random_() % 64);
            case 3:
                return random_() >> (random_() % 64);
            case 4:
                return NextDouble();
            case 5:
                return NextBytes();
            case 6:
                return Value(NextBytes(), vxJson::binaryKind);
            case 7:
                return Value(random_(), false);
            case 8: {
                Value array(vxJson::arrayKind, false);
                for (std::size_t i = random_() % 5; i > 0; --i) array.append(Next(depth - 1));
                return array;
            }
            default: {
                Value object(vxJson::objectKind, false);
                for (std::size_t i = random_() % 5; i > 0; --i)
                    object[NextBytes()] = Next(depth - 1);
                return object;
            }
        }
    }

    double NextDouble() {
        for (;;) {
            const std::uint64_t bits = random_();
            double number = 0;
            std::memcpy(&number, &bits, sizeof number);
            if (std::isfinite(number)) return number;
        }
    }

  private:
    std::string NextBytes() {
        std::string bytes(random_() % 20, '\0');
        for (char& byte : bytes) byte = static_cast<char>(random_() & 0xff);
        return bytes;
    }

    std::mt19937_64 random_{20};
};

TEST(JsonText, GivesEveryValueBack) {
    RandomValues values;
    for (int i = 0; i < 3000; ++i) {
        const Value value = values.Next(5);
        ASSERT_EQ(Parse(value.toString(false), true), value);
        ASSERT_EQ(Parse(value.toStyledString(), true), value);
        const Value plain = Parse(value.toString(false), false);
        ASSERT_EQ(plain.toString(false), value.toString(false));
        ASSERT_EQ(Value(value), value);
    }
    for (int i = 0; i < 100000; ++i) {
        const double number = values.NextDouble();
        ASSERT_EQ(Parse(Value(number).toString(false), false), Value(number));
    }
}

// Every mutation of a text is rejected or reads as a value that survives text.
TEST(JsonText, SurvivesMutation) {
    const std::string seed =
        R"({"a":[1,-2.5e3,true,null,"x\u00e9\n"],"$date":{"$numberLong":"12"},"":{}})";
    std::mt19937 random(3);
    for (int i = 0; i < 50000; ++i) {
        std::string text = seed;
        for (std::size_t edits = 1 + random() % 3; edits > 0; --edits) {
            const std::size_t at = random() % text.size();
            const char byte =
                random() % 2 ? seed[random() % seed.size()] : static_cast<char>(random());
            random() % 2 ? text.replace(at, 1, 1, byte) : text.erase(at, random() % 3);
        }
        const std::string first = Reprint(text, true);
        ASSERT_TRUE(first == "-" || Reprint(first, true) == first) << text;
    }
}

class ThrowingBuffer : public std::streambuf {
    int_type underflow() override { throw std::runtime_error("device gone"); }
};

TEST(JsonText, ReadsTheRestOfAStream) {
    std::istringstream used("skip [1]");
    used.seekg(4);
    Value value;
    EXPECT_TRUE(vxJson::Reader().parse(used, value, false));
    EXPECT_EQ(value.toString(false), "[1]");
    EXPECT_FALSE(vxJson::Reader().parse(used, value, false)) << "nothing is left";
    EXPECT_TRUE(value.isNull());

    std::istringstream failed("[1]");
    failed.setstate(std::ios::failbit);
    EXPECT_FALSE(vxJson::Reader().parse(failed, value = 1, false));
    EXPECT_TRUE(value.isNull());

    ThrowingBuffer buffer;
    std::istream broken(&buffer);
    EXPECT_FALSE(vxJson::Reader().parse(broken, value = 1, false));
    EXPECT_TRUE(value.isNull());

    std::istringstream large("\"" + std::string(100000, 'x') + "\"");
    EXPECT_TRUE(vxJson::Reader().parse(large, value, false));
    EXPECT_EQ(value.asString(), std::string(100000, 'x'));
}

}  // namespace
