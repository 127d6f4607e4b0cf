#include <VxUtil/vxJson.h>
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <map>
#include <random>
#include <sstream>
#include <vector>

#include "tests/support/Rows.h"
#include "tests/support/Texts.h"

using vxJson::Value;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr long long int64Min = std::numeric_limits<long long>::min();

static_assert(vxJson::nullKind == 0 && vxJson::binaryKind == 110);

template <typename T, typename = void>
constexpr bool kCanAppend = false;
template <typename T>
constexpr bool kCanAppend<T, std::void_t<decltype(Value().append(std::declval<T>()))>> = true;
/// Whether a value can be made from or assigned a T.
template <typename... T>
constexpr bool kCanStore = (... || (std::is_constructible_v<Value, T> ||
                                    std::is_assignable_v<Value&, T> || kCanAppend<T>));
static_assert(kCanStore<short> && kCanStore<char*> && kCanStore<char[2]>);
static_assert(std::is_assignable_v<Value&, std::string_view>);
static_assert(!kCanStore<char, signed char, unsigned char, wchar_t, char16_t, char32_t>);
static_assert(!kCanStore<std::nullptr_t, void*, int*, vxJson::ValueType>);
static_assert(!std::is_assignable_v<Value&, const Value*>);
template <typename T, typename = void>
constexpr bool kTakesPairInBraces = false;
template <typename T>
constexpr bool kTakesPairInBraces<T, std::void_t<decltype(T{{"port", 24}})>> = true;
static_assert(!kTakesPairInBraces<Value>, "not a string of 24 bytes");
template <typename T, typename = void>
constexpr bool kTakesList = false;
template <typename T>
constexpr bool kTakesList<T, std::void_t<decltype(std::declval<Value&>() = {T(), T()})>> = true;
static_assert(!kTakesList<char> && !kTakesList<const char*>);
template <typename T, typename = void>
constexpr bool kTakesEmptyList = false;
template <typename T>
constexpr bool kTakesEmptyList<T, std::void_t<decltype(std::declval<T&>() = {})>> = true;
static_assert(!kTakesEmptyList<Value>, "null, an empty array or an empty object");
static_assert(std::is_nothrow_move_constructible_v<Value> &&
              std::is_nothrow_move_assignable_v<Value>);

// Returns the names of the tests that a value passes.
std::string Tests(const Value& v) {
    const std::pair<const char*, bool> tests[] = {
        {"null", v.isNull()},     {"bool", v.isBool()},     {"integer", v.isInteger()},
        {"double", v.isDouble()}, {"string", v.isString()}, {"binary", v.isBinary()},
        {"time", v.isTime()},     {"array", v.isArray()},   {"object", v.isObject()},
        {" empty", v.empty()}};
    std::string passed;
    for (const auto& [name, passes] : tests) passed += passes ? name : "";
    return passed;
}

// Returns the results of the tests and conversions, "E" for an error.
std::vector<std::string> Conversions(const Value& value) {
    const auto text = [&value](auto convert) -> std::string {
        std::ostringstream result;
        result.precision(12);
        try {
            result << (value.*convert)();
        } catch (const vxJson::Error&) {
            return "E";
        }
        return result.str();
    };
    return {Tests(value),         text(&Value::asString), text(&Value::asBinary),
            text(&Value::asInt),  text(&Value::asInt64),  text(&Value::asTime),
            text(&Value::asBool), text(&Value::asDouble)};
}

TEST(JsonValue, ConvertsByKind) {
    for (auto row : RowsOf(TEST_DATA "/conversions.txt")) {
        const Value value = Json(row[0]);
        row.erase(row.begin());
        EXPECT_EQ(Conversions(value), row) << value;
    }
    EXPECT_EQ(Conversions(infinity), Rows("double | null | E | E | E | E | 1 | inf")[0]);
    EXPECT_EQ(Conversions(notANumber), Rows("double | null | E | E | E | E | 1 | nan")[0]);
    EXPECT_EQ(Value(-0x1p63).asInt64(), int64Min);
}

TEST(JsonValue, ErrorsNameOperationAndKinds) {
    Value null;
    Value text = "x";
    Value array = Json("[1]");
    volatile int beyond = 3;
    Value object = Json("{}");
    const std::pair<std::function<void()>, const char*> rows[] = {
        {[&] { text.asInt(); }, "asInt: found kind string, wanted a number"},
        {[&] { Value(7.5).asTime(); }, "asTime: double 7.5 is not a whole number in range"},
        {[&] { text["k"]; }, "operator[]: found kind string, wanted an object"},
        {[&] { object[static_cast<const char*>(nullptr)]; }, "operator[]: null pointer as key"},
        {[&] { object[0]; }, "operator[]: found kind object, wanted an array"},
        {[&] { array[-1]; }, "operator[]: negative index -1"},
        {[&] { null[-1]; }, "operator[]: negative index -1"},
        {[&] { object.append(std::move(array)); }, "append: found kind object, wanted an array"},
        {[&] { text.append(new Value(2)); }, "append: found kind string, wanted an array"},
        {[&] { array.append(static_cast<Value*>(nullptr)); }, "append: null pointer"},
        {[&] { Value("x", -1); }, "Value: negative length -1"},
        {[&] { Value("x", beyond); }, "Value: length 3 exceeds the array of 2 bytes"},
        {[&] { Value(static_cast<vxJson::ValueType>(99), false); }, "Value: 99 is not a kind"},
        {[&] { Value("", vxJson::timeKind); }, "Value: bytes are a string or a binary"},
    };
    std::string left;
    for (const auto& [call, message] : rows) {
        try {
            call();
            ADD_FAILURE() << "no error: " << message;
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), message);
        }
    }
    for (const Value* value : {&null, &text, &array, &object}) left += value->toString(false);
    EXPECT_EQ(left, "null\"x\"[1]{}");
}

enum Plain { plainThree = 3 };

TEST(JsonValue, StoresByTheTypeOfTheArgument) {
    const auto store = [](auto&&... stored) {
        Value made;
        Value assigned;
        int index = 0;
        ((made.append(Value(stored)), assigned[index++] = stored), ...);
        EXPECT_EQ(made, assigned);
        return assigned.toString(false);
    };
    const char* const pointer = "pointer";
    char array[] = "array";
    EXPECT_EQ(
        store("text", pointer, array, std::string("s"), true, std::vector<bool>{true}[0], 1.5),
        R"(["text","pointer","array","s",true,true,1.5])");
    EXPECT_EQ(store(std::string_view("view", 2)), R"(["vi"])");
    EXPECT_EQ(store(0, 5u, -7L, 7UL, int64Min, ~0ULL, short{-3}, plainThree),
              "[0,5,-7,7,-9223372036854775808,18446744073709551615,-3,3]");
    EXPECT_EQ(store(Value::Time(-7), Value::Binary("ab")),
              store(Value(-7ULL, false), Value("ab", 2)));
    EXPECT_EQ(Value(5), Value(5ULL));
    EXPECT_EQ(Value("a\0b", 3), Value(std::string("a\0b", 3), vxJson::binaryKind));
    EXPECT_EQ(Value(nullptr, 0), Value("", vxJson::binaryKind));
    EXPECT_EQ(Value(std::string_view("abc", 2), vxJson::binaryKind), Value("ab", 2));
}

TEST(JsonValue, LooksUpWithoutFailing) {
    for (const char* text : {"null", "1", "\"\"", "\"k\"",
                             R"({"$binary":{"base64":"aw==","subType":"00"}})", "[]", "{}"}) {
        Value value = Json(text);
        const Value& constant = value;
        EXPECT_TRUE(constant["k"].isNull() && constant[std::string("k")].isNull()) << text;
        EXPECT_TRUE(constant[static_cast<const char*>(nullptr)].isNull()) << text;
        EXPECT_FALSE(value.isMember("k") || value.removeMember("k")) << text;
        EXPECT_FALSE(value.removeMember(static_cast<const char*>(nullptr))) << text;
        for (const auto member : value.members()) ADD_FAILURE() << text << " has " << member.key;
        EXPECT_TRUE(constant[0].isNull() && constant[-1].isNull()) << text;
        EXPECT_TRUE(value.begin().isEqual(value.end())) << text;
        EXPECT_EQ(value.size(), 0u) << text;
        EXPECT_EQ(value.toString(false), text) << "unchanged";
    }
    const Value full = Json(R"({"k":[1]})");
    EXPECT_TRUE(full["l"].isNull() && full["k"][1].isNull() && full["k"][-1].isNull());
    const Value longKeys = Json(R"({"an equal start, an equal end":1,"the 17 bytes of a":2})");
    EXPECT_TRUE(longKeys["an equal start; an equal end"].isNull());
    EXPECT_TRUE(longKeys["the 17 bytes of b"].isNull());
    const Value lengths = Json(R"({"":0,"a":1,"ab":2,"abcd":3,"abcdefg":4,"abcdefgh":5,
        "abcdefghijklmno":6,"abcdefghijklmnop":7,"\u00e9":8})");
    EXPECT_TRUE(lengths[""] == 0 && lengths["a"] == 1 && lengths["ab"] == 2 &&
                lengths["abcd"] == 3 && lengths["abcdefg"] == 4 && lengths["abcdefgh"] == 5 &&
                lengths["abcdefghijklmno"] == 6 && lengths["abcdefghijklmnop"] == 7 &&
                lengths["\xc3\xa9"] == 8);
    EXPECT_TRUE(lengths["abc"].isNull() && lengths["abcdefgi"].isNull());
    const Value sixteen = Json(R"({"0123456789abcdef":1})");
    EXPECT_TRUE(sixteen["0123456X89abcdef"].isNull());
    EXPECT_TRUE(full["k"][0].asInt() == 1 && full["k"].size() == 1 && !full["k"].empty());
}

TEST(JsonValue, WritingCreatesMembersAndElements) {
    Value object;
    object["k"]["inner"];
    object[std::string("a\0b", 3)] = 1;
    object[std::string_view("key", 1)]["outer"] = 0;
    EXPECT_EQ(object.toString(false), R"({"a\u0000b":1,"k":{"inner":null,"outer":0}})");
    EXPECT_EQ(std::as_const(object)[std::string_view("a\0bc", 3)], 1);
    EXPECT_TRUE(object.isMember(std::string_view("key", 1)) && object.removeMember("k"));
    EXPECT_FALSE(object.isMember("k") || object.isMember(static_cast<const char*>(nullptr)));
    Value array;
    array[1] = "x";
    array.append(Value()) = "first";
    array.append(0);
    array.append(true);
    array.append(-1.5);
    array.append("text");
    *array.append(new Value(3)) = 4;
    EXPECT_EQ(array.toString(false), R"([null,"x","first",0,true,-1.5,"text",4])");
    int index = 0;
    for (auto i = array.begin(); !i.isEqual(array.end()); i.increment()) i.deref() = index++;
    EXPECT_EQ(array.toString(false), "[0,1,2,3,4,5,6,7]");
}

TEST(JsonValue, IsWalkedByRangeFor) {
    Value object = Json(R"({"b":2,"a":1,"c":[3,4]})");
    for (Value& value : object["c"]) value = value.asInt() * 10;
    std::string walked;
    for (const auto [key, value] : std::as_const(object).members())
        walked += key + value.toString(false);
    EXPECT_EQ(walked, "a1b2c[30,40]");
    for (auto [key, value] : object.members()) value = key;
    EXPECT_EQ(object.toString(false), R"({"a":"a","b":"b","c":"c"})");
    EXPECT_EQ(std::find(object.begin(), object.end(), Value("b")).key(), "b");
    const auto members = std::as_const(object).members();
    EXPECT_EQ(std::distance(members.begin(), members.end()), 3);
    EXPECT_EQ(std::count_if(members.begin(), members.end(),
                            [](const auto& member) { return member.key > "a"; }),
              2);
    auto member = members.begin();
    EXPECT_EQ((member++)->key, "a");
    EXPECT_EQ(member->value, "b");
    EXPECT_TRUE(member == std::next(members.begin()));
    const Value array = Json("[1,2]");
    EXPECT_EQ(std::next(array.begin())++->asInt(), 2);
    EXPECT_EQ(array.begin().key(), "");
}

/// Adds and removes keys and compares with a standard map.
void CompareWithMap(std::vector<std::string> keys, std::mt19937& random) {
    std::map<std::string, Value*> model;
    Value object;
    const Value& constant = object;
    for (const unsigned share : {100u, 50u, 50u, 100u, 1u, 100u, 0u, 20u}) {
        std::shuffle(keys.begin(), keys.end(), random);
        for (const std::string& key : keys) {
            if (random() % 100 < share) {
                model[key] = &(object[key] = key);
            } else {
                ASSERT_EQ(object.removeMember(key), model.erase(key) == 1);
            }
        }
        ASSERT_EQ(object.size(), model.size());
        ASSERT_EQ(std::distance(object.begin(), object.end()), object.size());
        auto expected = model.begin();
        for (const auto [key, value] : object.members()) {
            ASSERT_EQ(key, expected->first);
            ASSERT_EQ(&value, expected++->second);
            ASSERT_EQ(value, Value(key));
        }
        for (const std::string& key : keys) {
            const auto found = model.find(key);
            ASSERT_EQ(constant.isMember(key) ? &constant[key] : nullptr,
                      found == model.end() ? nullptr : found->second);
        }
        EXPECT_EQ(Value(object), object);
        if (object.empty()) continue;
        Value nulls = object;
        for (Value& value : nulls) value = Value();
        std::string text = nulls.toString(false) + object.toString(false);
        text.replace(text.find("}{"), 2, ",");
        const Value parsed = Json(text);
        EXPECT_EQ(parsed, object) << "of equal keys the last wins";
        for (const std::string& key : keys)
            ASSERT_EQ(parsed[key], model.count(key) != 0 ? Value(key) : Value()) << key;
    }
}

// The key lengths are those at which key comparison changes. There are enough keys to split the
// index, and then few enough for the shortest way to a member.
TEST(JsonValue, KeepsMembersSortedAndTheirAddresses) {
    std::vector<std::string> keys;
    for (const std::string stem : {"", "1", "123", "1234567", "12345678", "123456781234567",
                                   "1234567812345678", "12345678123456781234"}) {
        keys.push_back(stem);
        for (int first = 0; first < 256; first += 5) {
            for (const char* rest : {"", "a", "\xff"}) {
                keys.push_back(stem + static_cast<char>(first) + rest);
            }
        }
    }
    std::mt19937 random(1);
    CompareWithMap(keys, random);
    for (int count = 1; count < 200 && !testing::Test::HasFatalFailure(); ++count) {
        std::shuffle(keys.begin(), keys.end(), random);
        CompareWithMap({keys.begin(), keys.begin() + 1 + count % 24}, random);
    }
}

TEST(JsonValue, AssignsFromItself) {
    const std::pair<void (*)(Value&, Value&), const char*> rows[] = {
        {[](Value& v, Value&) { v = *&v; }, R"({"a":{"b":["x",1]}})"},
        {[](Value& v, Value&) { std::ref(v).get() = std::move(v); }, R"({"a":{"b":["x",1]}})"},
        {[](Value& v, Value&) { static_cast<Value>(v)["a"]["b"][0] = 2; },
         R"({"a":{"b":["x",1]}})"},
        {[](Value& v, Value& part) { v = part; }, R"(["x",1])"},
        {[](Value& v, Value& part) { v = std::move(part[0]); }, R"("x")"},
        {[](Value& v, Value& part) { part = v; }, R"({"a":{"b":{"a":{"b":["x",1]}}}})"},
        {[](Value&, Value& part) { part.append(part); }, R"({"a":{"b":["x",1,["x",1]]}})"},
        {[](Value&, Value& part) { part.append(part[0]); }, R"({"a":{"b":["x",1,"x"]}})"},
        {[](Value&, Value& part) { part.append(std::move(part)); }, R"({"a":{"b":[["x",1]]}})"},
    };
    for (const auto& row : rows) {
        Value value = Json(R"({"a":{"b":["x",1]}})");
        row.first(value, value["a"]["b"]);
        EXPECT_EQ(value.toString(false), row.second) << "row " << &row - rows;
    }
}

TEST(JsonValue, OrdersTotally) {
    const auto rows = RowsOf(TEST_DATA "/ascending.txt");
    for (std::size_t a = 0; a < rows.size(); ++a) {
        for (std::size_t b = 0; b < rows.size(); ++b) {
            const Value left = Json(rows[a][0]);
            const Value right = Json(rows[b][0]);
            EXPECT_EQ(left < right, a < b) << left << " and " << right;
            EXPECT_EQ(left == right, a == b) << left << " and " << right;
            EXPECT_EQ(left != right, a != b) << left << " and " << right;
        }
    }
    EXPECT_TRUE(Value(1.7e308) < Value(infinity) && Value(-infinity) < Value(-1.7e308));
    EXPECT_TRUE(Value(infinity) < Value(notANumber) && Value(notANumber) < Value(0ULL, false));
    EXPECT_EQ(Value(notANumber), Value(-notANumber));
}

}  // namespace
