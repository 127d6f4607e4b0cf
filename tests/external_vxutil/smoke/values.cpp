// Checks the header that hides which VxUtil the data engine is built over, over a third-party one.
#include "contracts/detail/JsonValues.h"

#include <iostream>

namespace {

using dataengine::detail::EmptyArray;
using dataengine::detail::EmptyObject;
using dataengine::detail::NullValue;

/// Writes down what it is told, separated by blanks.
struct Recorder {
    std::string text;

    void Nil() { text += "nil "; }
    void Bool(bool value) { text += value ? "true " : "false "; }
    void Unsigned(std::uint64_t number) { text += 'u' + std::to_string(number) + ' '; }
    void Integer(std::int64_t number) { text += 'i' + std::to_string(number) + ' '; }
    void Double(double number) {
        text += number == 922.1227649106431 ? "exact " : 'd' + std::to_string(number) + ' ';
    }
    void Str(const std::string& bytes) { text += '"' + bytes + "\" "; }
    void Bin(const std::string& bytes) { text += "bin:" + bytes + ' '; }
    void Time() { text += "time "; }
    void Array(std::size_t count) { text += '[' + std::to_string(count) + ' '; }
    void Map(std::size_t count) { text += '{' + std::to_string(count) + ' '; }
};

std::string Visited(const vxJson::Value& value) {
    Recorder recorder;
    dataengine::detail::VisitValue(value, recorder);
    return recorder.text;
}

std::string Visited(const std::string& text) {
    vxJson::Value value = NullValue();
    return dataengine::detail::ParseValue(text, value) ? Visited(value) : "not JSON";
}

}  // namespace

int main() {
    vxJson::Value made = NullValue();
    made.append(dataengine::detail::BoolValue(true));
    made.append(dataengine::detail::BoolValue(false));
    made.append(EmptyArray());
    made.append(EmptyObject());
    const std::string rows[][2] = {
        {Visited(made), "[4 true false [0 {0 "},
        {Visited("18446744073709551615"), "u18446744073709551615 "},
        {Visited("[-9223372036854775808,1.5,922.1227649106431]"),
         "[3 i-9223372036854775808 d1.500000 exact "},
        {Visited(R"({"a":{"$date":"x"},"b":[null,[[]],""],"c":{"$binary":1}})"),
         R"({3 "a" {1 "$date" "x" "b" [3 nil [1 [0 "" "c" {1 "$binary" u1 )"},
        {Visited("[1"), "not JSON"},
    };
    int failures = 0;
    for (const auto& [actual, expected] : rows) {
        if (actual == expected) continue;
        std::cerr << "values: " << actual << "\nvalues: not " << expected << '\n';
        ++failures;
    }
    return failures;
}
