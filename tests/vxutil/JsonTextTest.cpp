#include <VxUtil/vxJson.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <sstream>
#include <streambuf>

#include "tests/support/RandomValue.h"
#include "tests/support/Rows.h"
#include "tests/support/Texts.h"

using std::string_literals::operator""s;
using vxJson::Value;

namespace {

/// Parses the rest of a stream into `value`. Checks that a failure leaves it null.
bool Parse(std::istream& input, Value& value, bool extended) {
    value = "old";
    const bool done = vxJson::Reader().parse(input, value, extended);
    EXPECT_TRUE(done || value.isNull()) << value;
    return done;
}

/// Returns the compact text of the value of `text`, or "-" if `text` does not parse.
std::string Reprint(const std::string& text, bool extended = false) {
    std::istringstream input(text);
    Value value;
    const bool done = Parse(input, value, extended);
    try {
        EXPECT_EQ(vxJson::Parse(text, extended), value);
        EXPECT_TRUE(done);
    } catch (const vxJson::Error&) {
        EXPECT_FALSE(done);
    }
    return done ? value.toString(false) : "-";
}

TEST(JsonText, ReadsAndPrintsEveryForm) {
    auto rows = RowsOf(TEST_DATA "/texts.txt");
    rows.push_back({"\"\x7f\xff\xc0\"", "\"\x7f\xff\xc0\""});
    for (const auto& row : rows) {
        EXPECT_EQ(Reprint(row[0]), row[1]);
        EXPECT_EQ(Reprint(" \t[\r\n" + row[0] + " ] \n", true), "[" + row[1] + "]") << row[0];
    }
}

TEST(JsonText, RejectsInvalidText) {
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

TEST(JsonText, ErrorsNameTheByte) {
    const std::pair<std::string, const char*> rows[] = {
        {"", "byte 0: is not JSON (The document is empty.)"},
        {"[1, tru]", "byte 7: is not JSON (Invalid value.)"},
        {"[1]\0[2]"s,
         "byte 3: is not JSON (The document root must not be followed by other values.)"},
        {"[2e308]", "byte 1: is not JSON (A number or a string is too large.)"}};
    for (const auto& [text, message] : rows) {
        try {
            vxJson::Parse(std::string_view(text));
            ADD_FAILURE() << "no error: " << message;
        } catch (const vxJson::Error& error) {
            EXPECT_STREQ(error.what(), message);
        }
    }
    EXPECT_EQ(vxJson::Parse(std::string_view("[1]2").substr(0, 3)), Json("[1]"));
}

TEST(JsonText, ConvertsExtendedFormsOfExactShape) {
    auto rows = RowsOf(TEST_DATA "/forms.txt");
    for (const auto& row : RowsOf(TEST_DATA "/lookalikes.txt")) rows.push_back({row[0], row[0]});
    for (const auto& row : RowsOf(TEST_DATA "/kinds.txt")) {
        const Value value =
            row[0] == "time" ? Value::Time(std::stoll(row[1])) : Value::Binary(Hex(row[1]));
        EXPECT_EQ(Json(row[2]), value);
        rows.push_back({row[2], row[2]});
    }
    for (const auto& row : rows) {
        const std::string& text = row[0];
        const std::string& printed = row[1];
        EXPECT_EQ(Reprint(text, true), printed) << text;
        EXPECT_EQ(Reprint("{\"k\":[" + text + ",0]}", true), "{\"k\":[" + printed + ",0]}") << text;
        EXPECT_EQ(Reprint(text)[0], '{') << text << " is plain JSON";
    }
    EXPECT_TRUE(std::isnan(Json(R"({"$numberDouble":"NaN"})").asDouble()));
    EXPECT_EQ(Json(R"({"$numberDouble":"Infinity"})"), Value(HUGE_VAL));
    EXPECT_EQ(Json(R"({"$numberDouble":"-Infinity"})"), Value(-HUGE_VAL));
}

TEST(JsonText, StylesWithFourSpaces) {
    const Value value = Json(R"({"b":[{"c":1},2],"a":{}})");
    EXPECT_EQ(value.toStyledString(),
              "{\n    \"a\": {},\n    \"b\": [\n        {\n            \"c\": 1\n        },\n      "
              "  2\n    ]\n}");
    EXPECT_EQ(value.toString(true), value.toStyledString());
    EXPECT_EQ(testing::PrintToString(value), value.toString(false));
}

TEST(JsonText, RoundTripsAreEqual) {
    std::mt19937_64 random(20);
    const auto bytes = [&random] {
        std::string text(random() % 20, '\0');
        for (char& byte : text) byte = static_cast<char>(random());
        return text;
    };
    for (int i = 0; i < 3000; ++i) {
        const Value value = RandomValue(random, 4, bytes);
        ASSERT_EQ(Json(value.toString(false)), value);
        ASSERT_EQ(Json(value.toStyledString()), value);
        ASSERT_EQ(Value(value), value);
    }
}

TEST(JsonText, DepthIsLimitedByMemoryOnly) {
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

// Provides a complete text that fills the first read, then spaces, and fails after some parts.
class FailingBuffer : public std::streambuf {
  public:
    explicit FailingBuffer(int parts) : parts_(parts) {}

  private:
    int_type underflow() override {
        if (parts_-- == 0) throw std::runtime_error("device gone");
        text_ = (text_.empty() ? "[1]" : "   ") + std::string(4093, ' ');
        setg(text_.data(), text_.data(), text_.data() + text_.size());
        return traits_type::to_int_type(text_[0]);
    }
    int parts_;
    std::string text_;
};

TEST(JsonText, ReadsTheRestOfAStream) {
    const std::string large(100000, 'x');
    std::istringstream stream("skip \"" + large + "\"");
    stream.seekg(4);
    Value value;
    EXPECT_TRUE(Parse(stream, value, false) && value.asString() == large);
    EXPECT_FALSE(Parse(stream, value, false)) << "the stream is at its end";
    stream.str("[1]");
    stream.clear(std::ios::failbit);
    EXPECT_FALSE(Parse(stream, value, false)) << "the stream had failed before";
    for (const int parts : {1, 2}) {
        FailingBuffer buffer(parts);
        std::istream broken(&buffer);
        EXPECT_FALSE(Parse(broken, value, false)) << "the stream fails after part " << parts;
    }
}

}  // namespace
