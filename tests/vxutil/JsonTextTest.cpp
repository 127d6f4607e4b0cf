#include <VxUtil/vxJson.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <streambuf>

#include "tests/support/Rows.h"
#include "tests/support/Texts.h"

using std::string_literals::operator""s;
using vxJson::Value;

namespace {

/// Reads the rest of a stream into `value`, which must be null afterwards if that fails.
bool Parse(std::istream& input, Value& value, bool extended) {
    value = "old";
    const bool done = vxJson::Reader().parse(input, value, extended);
    EXPECT_TRUE(done || value.isNull()) << value;
    return done;
}

/// The value of a text, compact; "-" if it doesn't parse.
std::string Reprint(const std::string& text, bool extended = false) {
    std::istringstream input(text);
    Value value;
    return Parse(input, value, extended) ? value.toString(false) : "-";
}

TEST(JsonText, ReadsAndPrintsWhatStoresKeep) {
    auto rows = RowsOf(TEST_DATA "/texts.txt");
    rows.push_back({"\"\x7f\xff\xc0\"", "\"\x7f\xff\xc0\""});
    for (const auto& row : rows) {
        EXPECT_EQ(Reprint(row[0]), row[1]);
        EXPECT_EQ(Reprint(" \t[\r\n" + row[0] + " ] \n", true), "[" + row[1] + "]") << row[0];
    }
}

TEST(JsonText, RejectsWhatIsNotOneText) {
    auto rows = RowsOf(TEST_DATA "/broken.txt");
    for (const std::string& text :
         {""s, " \t\r\n"s, "\v1"s, "\xef\xbb\xbf{}"s, "1\0"s, "\0001"s, "\"a\0b\""s, "[1]\0[2]"s,
          "\"\t\""s, "\"\x1f\""s, "1" + std::string(309, '0'), "1" + std::string(6000, '0')})
        rows.push_back({text});
    for (const auto& row : rows) {
        EXPECT_EQ(Reprint(row[0]), "-") << row[0];
        EXPECT_EQ(Reprint("{\"k\":" + row[0] + "}"), "-") << row[0];
    }
}

TEST(JsonText, TellsExtendedFormsByTheirExactShape) {
    for (const auto& row : RowsOf(TEST_DATA "/kinds.txt")) {
        const std::string& text = row[2];
        const Value value = row[0] == "time" ? Value(std::stoull(row[1]), false)
                                             : Value(Hex(row[1]), vxJson::binaryKind);
        EXPECT_EQ(value.toString(false), text);
        EXPECT_EQ(Json(text), value);
        EXPECT_EQ(Json("[" + text + "]")[0], value);
        std::istringstream input(text);
        Value plain;
        EXPECT_TRUE(Parse(input, plain, false) && plain.isObject()) << text;
    }
    for (const auto& row : RowsOf(TEST_DATA "/lookalikes.txt")) {
        EXPECT_TRUE(Json(row[0]).isObject()) << row[0];
        EXPECT_EQ(Reprint(row[0], true), row[0]);
    }
}

TEST(JsonText, ReadsTheFormsOfStoreClients) {
    for (const auto& row : RowsOf(TEST_DATA "/forms.txt")) {
        const std::string& text = row[0];
        const std::string& meaning = row[1];
        EXPECT_EQ(Reprint(text, true), meaning) << text;
        EXPECT_EQ(Reprint("{\"k\":[" + text + ",0]}", true), "{\"k\":[" + meaning + ",0]}") << text;
        std::istringstream input(text);
        Value plain;
        EXPECT_TRUE(Parse(input, plain, false) && plain.isObject()) << text;
    }
    EXPECT_TRUE(std::isnan(Json(R"({"$numberDouble":"NaN"})").asDouble()));
    EXPECT_EQ(Json(R"({"$numberDouble":"Infinity"})"), Value(HUGE_VAL));
    EXPECT_EQ(Json(R"({"$numberDouble":"-Infinity"})"), Value(-HUGE_VAL));
}

TEST(JsonText, StylesWithFourSpaces) {
    const Value value = Json(R"({"b":[{"c":1},2],"a":{}})");
    EXPECT_EQ(value.toStyledString(), R"({
    "a": {},
    "b": [
        {
            "c": 1
        },
        2
    ]
})");
    EXPECT_EQ(value.toString(true), value.toStyledString());
    EXPECT_EQ(testing::PrintToString(value), value.toString(false));
}

Value RandomValue(std::mt19937_64& random, int depth) {
    const auto bytes = [&random] {
        std::string text(random() % 20, '\0');
        for (char& byte : text) byte = static_cast<char>(random() & 0xff);
        return text;
    };
    const auto kind = random() % (depth > 0 ? 11 : 8);
    if (kind == 0) return Value();
    if (kind == 1) return (random() & 1) != 0;
    if (kind == 2) return static_cast<std::int64_t>(random()) >> (random() % 64);
    if (kind == 3) return random() >> (random() % 64);
    if (kind == 4)
        return std::ldexp(static_cast<double>(static_cast<std::int64_t>(random())),
                          static_cast<int>(random() % 2000) - 1080);
    if (kind == 5) return bytes();
    if (kind == 6) return Value(bytes(), vxJson::binaryKind);
    if (kind == 7) return Value(random(), false);
    Value value(kind == 8 ? vxJson::arrayKind : vxJson::objectKind, false);
    for (auto i = random() % 5; i > 0; --i)
        (kind == 8 ? value.append(Value()) : value[bytes()]) = RandomValue(random, depth - 1);
    return value;
}

TEST(JsonText, GivesEveryValueBack) {
    std::mt19937_64 random(20);
    for (int i = 0; i < 3000; ++i) {
        const Value value = RandomValue(random, 5);
        ASSERT_EQ(Json(value.toString(false)), value);
        ASSERT_EQ(Json(value.toStyledString()), value);
        ASSERT_EQ(Value(value), value);
    }
}

TEST(JsonText, IsAsDeepAsItGets) {
    for (const auto& row : Rows(R"(
        1000000 | [ |  | ]
        300000 | {"k": | 1 | }
        300000 | [0,{"k": | [] | ,"l":0},1])")) {
        const std::size_t depth = std::stoul(row[0]);
        std::string text;
        for (std::size_t i = 0; i < depth; ++i) text += row[1];
        text += row[2];
        for (std::size_t i = 0; i < depth; ++i) text += row[3];
        const Value value = Json(text);
        Value copy = value;
        EXPECT_TRUE(copy == value && !(copy < value)) << row[1];
        EXPECT_TRUE(copy.toString(false) == text) << row[1];
        EXPECT_LT(copy.toStyledString().size(), 800 * depth) << row[1];
        text.pop_back();
        EXPECT_TRUE(Reprint(text) == "-") << row[1];
    }
}

// Gives a whole text, of as many bytes as are read at once, and fails behind it.
class FailingBuffer : public std::streambuf {
  public:
    FailingBuffer() { setg(text_.data(), text_.data(), text_.data() + text_.size()); }

  private:
    int_type underflow() override { throw std::runtime_error("device gone"); }
    std::string text_ = "[1]" + std::string(4093, ' ');
};

TEST(JsonText, ReadsTheRestOfAStream) {
    const std::string large(100000, 'x');
    std::istringstream stream("skip \"" + large + "\"");
    stream.seekg(4);
    Value value;
    EXPECT_TRUE(Parse(stream, value, false) && value.asString() == large);
    EXPECT_FALSE(Parse(stream, value, false)) << "nothing is left";
    stream.str("[1]");
    stream.clear(std::ios::failbit);
    EXPECT_FALSE(Parse(stream, value, false)) << "it had failed before";
    FailingBuffer buffer;
    std::istream broken(&buffer);
    EXPECT_FALSE(Parse(broken, value, false)) << "it fails";
}

}  // namespace
