#include <VxUtil/vxJson.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <sstream>
#include <vector>

using vxJson::Value;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr long long intMax = std::numeric_limits<int>::max();
constexpr long long int64Min = std::numeric_limits<long long>::min();
constexpr unsigned long long uint64Max = std::numeric_limits<unsigned long long>::max();

static_assert(!std::is_constructible_v<Value, std::nullptr_t>);
static_assert(!std::is_assignable_v<Value&, std::nullptr_t>);
static_assert(!std::is_constructible_v<Value, void*> && !std::is_constructible_v<Value, int*>);
static_assert(!std::is_assignable_v<Value&, const Value*>);
static_assert(!std::is_constructible_v<Value, vxJson::ValueType>);
static_assert(std::is_nothrow_move_constructible_v<Value> &&
              std::is_nothrow_move_assignable_v<Value> &&
              std::is_nothrow_default_constructible_v<Value>);

Value Binary(const std::string& bytes) {
    return Value(bytes, static_cast<vxJson::ValueType>(110));
}
Value Time(long long time) {
    return Value(static_cast<unsigned long long>(time), false);
}
Value EmptyOf(vxJson::ValueType type) {
    return Value(type, false);
}

// What the conversions give, as text, "E" for an error.
std::string Conversions(const Value& value) {
    std::ostringstream text;
    const auto add = [&text](auto convert) {
        try {
            text << convert() << " | ";
        } catch (const vxJson::Error&) {
            text << "E | ";
        }
    };
    text.precision(12);
    add([&] { return value.asString(); });
    add([&] { return value.asBinary(); });
    add([&] { return value.asInt(); });
    add([&] { return value.asInt64(); });
    add([&] { return value.asTime(); });
    add([&] { return value.asBool(); });
    add([&] { return value.asDouble(); });
    return text.str();
}

TEST(JsonValue, ConvertsWhatLosesNothing) {
    const std::pair<Value, const char*> rows[] = {
        {Value(), " |  | 0 | 0 | 0 | 0 | 0 | "},
        {true, "true | E | 1 | 1 | E | 1 | 1 | "},
        {false, "false | E | 0 | 0 | E | 0 | 0 | "},
        {0, "0 | E | 0 | 0 | 0 | 0 | 0 | "},
        {intMax, "2147483647 | E | 2147483647 | 2147483647 | 2147483647 | 1 | 2147483647 | "},
        {intMax + 1, "2147483648 | E | E | 2147483648 | 2147483648 | 1 | 2147483648 | "},
        {-intMax - 1,
         "-2147483648 | E | -2147483648 | -2147483648 | -2147483648 | 1 | -2147483648 | "},
        {-intMax - 2, "-2147483649 | E | E | -2147483649 | -2147483649 | 1 | -2147483649 | "},
        {uint64Max, "18446744073709551615 | E | E | E | E | 1 | 1.84467440737e+19 | "},
        {7.0, "7.0 | E | 7 | 7 | 7 | 1 | 7 | "},
        {7.5, "7.5 | E | E | E | E | 1 | 7.5 | "},
        {-0.0, "-0.0 | E | 0 | 0 | 0 | 0 | -0 | "},
        {2147483648.0, "2147483648.0 | E | E | 2147483648 | 2147483648 | 1 | 2147483648 | "},
        {0x1p63, "9223372036854775808.0 | E | E | E | E | 1 | 9.22337203685e+18 | "},
        {-0x1p63,
         "-9223372036854775808.0 | E | E | -9223372036854775808 | -9223372036854775808 | 1 "
         "| -9.22337203685e+18 | "},
        {infinity, "null | E | E | E | E | 1 | inf | "},
        {notANumber, "null | E | E | E | E | 1 | nan | "},
        {"12", "12 | 12 | E | E | E | E | E | "},
        {Binary("ab"), "ab | ab | E | E | E | E | E | "},
        {Time(-7), "E | E | -7 | -7 | -7 | E | E | "},
        {Time(intMax + 1), "E | E | E | 2147483648 | 2147483648 | E | E | "},
        {EmptyOf(vxJson::arrayKind), "E | E | E | E | E | E | E | "},
        {EmptyOf(vxJson::objectKind), "E | E | E | E | E | E | E | "},
    };
    for (const auto& [value, texts] : rows) EXPECT_EQ(Conversions(value), texts) << value;
}

TEST(JsonValue, ErrorsNameTheKinds) {
    Value text = "x";
    const std::pair<std::function<void()>, const char*> rows[] = {
        {[&] { text.asInt(); }, "asInt: found kind string, wanted a number"},
        {[&] { Value(uint64Max).asTime(); },
         "asTime: integer 18446744073709551615 is not a whole number in range"},
        {[&] { text["k"]; }, "operator[]: found kind string, wanted an object"},
        {[&] { text.append(1); }, "append: found kind string, wanted an array"},
        {[&] { Value("", vxJson::timeKind); },
         "Value: bytes make a string or a binary value, not kind time"},
    };
    for (const auto& [call, message] : rows) {
        try {
            call();
            ADD_FAILURE() << "no error: " << message;
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), message);
        }
    }
}

enum Plain { plainThree = 3 };

TEST(JsonValue, MeansWhatIsStored) {
    const char* const pointer = "pointer";
    char array[] = "array";
    const std::vector<bool> bits = {true};
    const auto check = [](auto&& stored, vxJson::ValueType type, const char* text) {
        Value assigned = "old";
        assigned = stored;
        for (const Value& value : {Value(stored), assigned}) {
            EXPECT_EQ(value.type(), type) << text;
            EXPECT_EQ(value.toString(false), text);
        }
    };
    check("text", vxJson::stringKind, "\"text\"");
    check(pointer, vxJson::stringKind, "\"pointer\"");
    check(array, vxJson::stringKind, "\"array\"");
    check(std::string("s"), vxJson::stringKind, "\"s\"");
    check(true, vxJson::boolKind, "true");
    check(bits[0], vxJson::boolKind, "true");
    check(0, vxJson::integerKind, "0");
    check(5u, vxJson::integerKind, "5");
    check(-7L, vxJson::integerKind, "-7");
    check(7UL, vxJson::integerKind, "7");
    check(int64Min, vxJson::integerKind, "-9223372036854775808");
    check(uint64Max, vxJson::integerKind, "18446744073709551615");
    check(short{-3}, vxJson::integerKind, "-3");
    check('A', vxJson::integerKind, "65");
    check(plainThree, vxJson::integerKind, "3");
    check(1.5, vxJson::doubleKind, "1.5");
    EXPECT_EQ(Value(5), Value(5ULL));
    EXPECT_EQ(Value("a\0b", 3), Binary(std::string("a\0b", 3)));
    EXPECT_EQ(Value(nullptr, 0), Binary(""));
    EXPECT_THROW(Value("x", -1), vxJson::Error);
    EXPECT_THROW(EmptyOf(static_cast<vxJson::ValueType>(99)), vxJson::Error);
}

TEST(JsonValue, LooksUpWithoutFailing) {
    Value object;
    object["k"] = 1;
    Value array;
    array.append(1);
    for (const Value& value : {Value(), Value(1), Value("k"), Binary("k"), object, array}) {
        EXPECT_TRUE(value["absent"].isNull() && value[std::string("k2")].isNull()) << value;
        EXPECT_TRUE(value[1].isNull() && value[-1].isNull()) << value;
        EXPECT_EQ(value["k"].isNull(), !value.isObject()) << value;
        EXPECT_EQ(value[0].isNull(), !value.isArray()) << value;
        EXPECT_EQ(value.size(), value.isArray() || value.isObject() ? 1u : 0u) << value;
        EXPECT_EQ(value.empty(), value.isNull()) << value;
    }
    EXPECT_TRUE(EmptyOf(vxJson::arrayKind).empty() && EmptyOf(vxJson::objectKind).empty());
    EXPECT_FALSE(EmptyOf(vxJson::stringKind).empty());
}

TEST(JsonValue, CreatesWhatIsLookedUpForWriting) {
    Value object;
    EXPECT_TRUE(object["k"].isNull());
    object["k"]["inner"];
    object[std::string("a\0b", 3)] = 1;
    EXPECT_EQ(object.toString(false), R"({"a\u0000b":1,"k":{"inner":null}})");
    Value array;
    array[2] = "x";
    EXPECT_EQ(array.toString(false), R"([null,null,"x"])");
    EXPECT_THROW(array[-1], vxJson::Error);
    EXPECT_THROW(array["k"], vxJson::Error);
    EXPECT_THROW(object[0], vxJson::Error);
    EXPECT_EQ(array.size(), 3u);
}

TEST(JsonValue, AppendsAndTakesOver) {
    Value array;
    array.append(Value()) = "first";
    array.append(0);
    array.append(true);
    array.append(-1.5);
    array.append("text");
    *array.append(new Value(3)) = 4;
    EXPECT_EQ(array.toString(false), R"(["first",0,true,-1.5,"text",4])");
    EXPECT_THROW(array.append(static_cast<Value*>(nullptr)), vxJson::Error);
    EXPECT_THROW(Value(1).append(new Value(2)), vxJson::Error);
}

// Keys around the sizes at which their comparison changes, against the standard's own order.
TEST(JsonValue, KeepsMembersInPlaceAndSorted) {
    std::map<std::string, Value*> model;
    Value object;
    for (const std::string stem : {"", "1234567", "12345678", "123456781234567", "1234567812345678",
                                   "12345678123456781234"}) {
        for (int first = 0; first < 256; first += 5) {
            for (const std::string rest : {"", "a", "\xff"}) {
                const std::string key = stem + static_cast<char>(first) + rest;
                Value& member = object[key];
                member = key;
                model[key] = &member;
            }
            model[stem] = &(object[stem] = stem);
        }
    }
    ASSERT_EQ(object.size(), model.size());
    auto expected = model.begin();
    for (auto i = object.begin(), end = object.end(); !i.isEqual(end); i.increment(), ++expected) {
        ASSERT_EQ(&i.deref(), expected->second);
        ASSERT_EQ(i.deref().asString(), expected->first);
    }
    const Value& constant = object;
    for (const auto& [key, member] : model) ASSERT_EQ(&constant[key], member) << Value(key);
}

TEST(JsonValue, WalksNothingButContainers) {
    for (Value value : {Value(), Value(1), Value("text"), Binary("b"), EmptyOf(vxJson::arrayKind),
                        EmptyOf(vxJson::objectKind)}) {
        EXPECT_TRUE(value.begin().isEqual(value.end())) << value;
    }
    Value array;
    for (int i = 0; i < 3; ++i) array.append(i);
    for (auto i = array.begin(); !i.isEqual(array.end()); i.increment()) {
        i.deref() = i.deref().asInt() * 10;
    }
    EXPECT_EQ(array.toString(false), "[0,10,20]");
}

TEST(JsonValue, SurvivesItself) {
    struct {
        const char* name;
        void (*act)(Value&);
        const char* text;
    } const rows[] = {
        {"copy to itself", [](Value& v) { v = *&v; }, R"({"a":{"b":["x",1]}})"},
        {"move to itself",
         [](Value& v) {
             Value& same = v;
             v = std::move(same);
         },
         R"({"a":{"b":["x",1]}})"},
        {"copy of a part", [](Value& v) { v = v["a"]; }, R"({"b":["x",1]})"},
        {"move of a part", [](Value& v) { v = std::move(v["a"]["b"][0]); }, R"("x")"},
        {"copy into a part", [](Value& v) { v["a"]["b"] = v; },
         R"({"a":{"b":{"a":{"b":["x",1]}}}})"},
        {"append of itself",
         [](Value& v) {
             Value& b = v["a"]["b"];
             b.append(b);
         },
         R"({"a":{"b":["x",1,["x",1]]}})"},
        {"append of an element",
         [](Value& v) {
             for (int i = 0; i < 3; ++i) v["a"]["b"].append(v["a"]["b"][0]);
         },
         R"({"a":{"b":["x",1,"x","x","x"]}})"},
        {"append of itself, moved",
         [](Value& v) {
             Value& b = v["a"]["b"];
             b.append(std::move(b));
         },
         R"({"a":{"b":[["x",1]]}})"},
        {"copy is independent",
         [](Value& v) {
             Value copy = v;
             copy["a"]["b"][0] = 2;
         },
         R"({"a":{"b":["x",1]}})"},
    };
    for (const auto& row : rows) {
        Value value;
        value["a"]["b"].append("x");
        value["a"]["b"].append(1);
        row.act(value);
        EXPECT_EQ(value.toString(false), row.text) << row.name;
    }
}

TEST(JsonValue, OrdersTotally) {
    std::istringstream text(
        R"([null, false, true, -9223372036854775808, -1, 0, 1, 9223372036854775807,
        18446744073709551615, -1.7e308, -1.5, -0.0, 0.0, 1.0, 1.7e308,
        {"$date":{"$numberLong":"-1"}}, {"$date":{"$numberLong":"2"}}, "", "a", "a!", "b", "é",
        {"$binary":{"base64":"","subType":"00"}}, {"$binary":{"base64":"YQ==","subType":"00"}},
        [], [1], [1,1], [2], [[]], {}, {"a":1}, {"a":1,"b":0}, {"a":2}, {"b":0}])");
    Value ascending;
    ASSERT_TRUE(vxJson::Reader().parse(text, ascending, true));
    for (auto a = ascending.begin(); !a.isEqual(ascending.end()); a.increment()) {
        bool passed = false;
        for (auto b = ascending.begin(); !b.isEqual(ascending.end()); b.increment()) {
            const Value& left = a.deref();
            const Value& right = b.deref();
            EXPECT_EQ(left < right, passed) << left << " and " << right;
            EXPECT_EQ(left == right, a.isEqual(b)) << left << " and " << right;
            EXPECT_EQ(left != right, !a.isEqual(b)) << left << " and " << right;
            passed = passed || a.isEqual(b);
        }
    }
    EXPECT_TRUE(Value(1.7e308) < Value(infinity) && Value(infinity) < Value(notANumber));
    EXPECT_TRUE(Value(notANumber) < Time(int64Min) && Value(-infinity) < Value(-1.7e308));
    EXPECT_EQ(Value(notANumber), Value(-notANumber));
}

}  // namespace
