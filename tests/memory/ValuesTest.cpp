#include <VxUtil/vxJson.h>

#include "tests/memory/Attempt.h"
#include "tests/support/Texts.h"

namespace {

using vxJson::Value;

constexpr char kOther[] = R"(["what stood here before, in many bytes"])";

// Every kind, keys and texts too long for the space inside a string, and three levels.
Value Rich() {
    Value value = Json(R"({"array":[1,-2,2.5,true,null,"a text of more than fifteen bytes",[[],{}]],
        "object with a key of many bytes":{"a":{"b":"another text of many bytes"}},"t":0})");
    value["t"] = Value(1700000000000ULL, false);
    value["bytes"] = Value("bytes that need not be text", 27);
    return value;
}

/// A value that starts as `before` and that the operation makes into `after`, or leaves alone.
template <class Operation>
void AllOrNothing(Attempt& attempt, const Value& before, const Value& after, Operation operation) {
    Value value = before;
    const bool done = attempt.Succeeds([&] { operation(value); });
    EXPECT_EQ(value, done ? after : before);
    value = before;
    operation(value);
    EXPECT_EQ(value, after);
}

/// An operation that reads a value and gives `expected`.
template <class Result, class Operation>
void Reads(Attempt& attempt, const Result& expected, Operation operation) {
    const Value value = Rich();
    attempt.Succeeds([&] { EXPECT_EQ(operation(value), expected); });
    EXPECT_EQ(value, Rich());
    EXPECT_EQ(operation(value), expected);
}

const Operation kChanges[] = {
    {"copy assignment",
     [](Attempt& attempt) {
         const Value source = Rich();
         AllOrNothing(attempt, Json(kOther), source, [&](Value& value) { value = source; });
     }},
    {"assignment of its own part",
     [](Attempt& attempt) {
         AllOrNothing(attempt, Rich(), Rich()["array"], [](Value& value) {
             const Value& whole = value;
             value = whole["array"];
         });
     }},
    {"assignment of a text",
     [](Attempt& attempt) {
         const char* text = "a text that does not fit in place";
         AllOrNothing(attempt, Json(kOther), Value(text), [&](Value& value) { value = text; });
     }},
    {"append of a copy",
     [](Attempt& attempt) {
         const Value source = Rich();
         Value after = Json(kOther);
         after.append(source);
         AllOrNothing(attempt, Json(kOther), after, [&](Value& value) { value.append(source); });
     }},
    {"append of itself",
     [](Attempt& attempt) {
         AllOrNothing(attempt, Json("[[1]]"), Json("[[1],[[1]]]"),
                      [](Value& value) { value.append(static_cast<const Value&>(value)); });
     }},
    {"append of a value made by new, which is deleted",
     [](Attempt& attempt) {
         AllOrNothing(attempt, Json("[1]"), Json("[1,2]"),
                      [](Value& value) { value.append(new Value(2)); });
     }},
    {"a new member",
     [](Attempt& attempt) {
         AllOrNothing(attempt, Json(R"({"a":1})"),
                      Json(R"({"a":1,"a key that does not fit in place":null})"),
                      [](Value& value) { value["a key that does not fit in place"]; });
     }},
    {"an element far behind the end",
     [](Attempt& attempt) {
         AllOrNothing(attempt, Json("[1]"), Json("[1,null,null,null]"),
                      [](Value& value) { value[3]; });
     }},
};

const Operation kReads[] = {
    {"copy",
     [](Attempt& attempt) {
         Reads(attempt, Rich(), [](const Value& value) { return Value(value); });
     }},
    {"comparison",
     [](Attempt& attempt) {
         const Value other = Rich();
         Reads(attempt, true,
               [&](const Value& value) { return value == other && !(value < other); });
     }},
    {"toString",
     [](Attempt& attempt) {
         Reads(attempt, Rich().toString(false),
               [](const Value& value) { return value.toString(false); });
     }},
    {"toStyledString",
     [](Attempt& attempt) {
         Reads(attempt, Rich().toStyledString(),
               [](const Value& value) { return value.toStyledString(); });
     }},
    {"asString",
     [](Attempt& attempt) {
         Reads(attempt, Rich()["array"][5].asString(),
               [](const Value& value) { return value["array"][5].asString(); });
     }},
};

const Operation kMakes[] = {
    {"parse",
     [](Attempt& attempt) {
         const std::string text = Rich().toString(false);
         Value value = Json(kOther);
         std::istringstream stream(text);
         const bool done = attempt.Succeeds([&] { vxJson::Reader().parse(stream, value, true); });
         EXPECT_EQ(value, done ? Rich() : Value());
         EXPECT_EQ(Json(text), Rich());
     }},
    {"parse of a broken text",
     [](Attempt& attempt) {
         Value value = Json(kOther);
         std::istringstream stream(R"({"a":["a text that does not fit in place",{"b":]})");
         attempt.Succeeds([&] { EXPECT_FALSE(vxJson::Reader().parse(stream, value, true)); });
         EXPECT_EQ(value, Value());
     }},
    {"an empty value of every kind",
     [](Attempt& attempt) {
         attempt.Succeeds([] {
             for (const auto kind :
                  {vxJson::stringKind, vxJson::binaryKind, vxJson::arrayKind, vxJson::objectKind}) {
                 EXPECT_EQ(Value(kind, false).type(), kind);
             }
         });
     }},
    {"a null value that becomes an array or an object",
     [](Attempt& attempt) {
         Value array;
         Value object;
         attempt.Succeeds([&] {
             array.append(1);
             object["a"] = 1;
         });
         EXPECT_TRUE(array.empty() || array == Json("[1]"));
         EXPECT_TRUE(object.empty() || object == Json(R"({"a":1})"));
         object["a"] = 1;
         EXPECT_EQ(object, Json(R"({"a":1})"));
     }},
};

TEST(Memory, ChangesAValueWhollyOrNotAtAll) {
    for (const Operation& operation : kChanges) FailEveryAllocation(operation);
}

TEST(Memory, ReadsAValueWithoutATrace) {
    for (const Operation& operation : kReads) FailEveryAllocation(operation);
}

// Where there is no memory for the text of an Error, std::bad_alloc comes in its place. Where there
// is none for the exception itself, the runtime has a reserve.
TEST(Memory, RaisesAnErrorOfEitherKind) {
    const Value value = Rich();
    const long before = Faults::Live();
    for (long failing = 1;; ++failing) {
        bool error = false;
        Faults::Arm(failing);
        try {
            value.asInt();
        } catch (const vxJson::Error&) {
            error = true;
        } catch (const std::bad_alloc&) {
        }
        const bool struck = Faults::Disarm();
        ASSERT_EQ(Faults::Live(), before) << failing;
        if (struck) continue;
        EXPECT_TRUE(error);
        EXPECT_GT(failing, 2);
        break;
    }
}

TEST(Memory, MakesValues) {
    for (const Operation& operation : kMakes) FailEveryAllocation(operation);
}

}  // namespace
