#include "tests/support/RandomPacked.h"

#include <cmath>
#include <cstring>
#include <iterator>
#include <string_view>

#include "tests/support/Texts.h"

namespace {

using std::string_view_literals::operator""sv;

// Lengths where encodings change, and where rapidjson's strings stop being short.
constexpr std::size_t kLengths[] = {0, 1, 12, 13, 14, 15, 16, 17, 31, 32, 33, 47, 48, 255, 256};

constexpr std::string_view kBinParts[] = {
    R"(a","b)"sv,  "x\"\0"sv, R"(a":1,"b)"sv, R"(\)"sv,      "]\0"sv,       "}]\0"sv,
    R"(a" ,"b)"sv, R"(\n)"sv, R"(\u0000)"sv,  R"(\ud83d)"sv, R"(\udc00)"sv, R"(a"],["b)"sv,
    R"(")"sv,      R"(\x)"sv, "\n"sv,         " "sv,         R"(1,")"sv,    R"({"k":")"sv};

std::uint64_t BitsOf(double number) {
    std::uint64_t bits;
    std::memcpy(&bits, &number, sizeof bits);
    return bits;
}

}  // namespace

std::string RandomPacked::Value() {
    isOdd_ = OneIn(3);
    elementsLeft_ = OneIn(20) ? 1000 : 60;
    return Any(OneIn(4) ? 0 : 30);
}

std::string RandomPacked::Any(int depth) {
    const std::uint64_t kind = Below(depth > 0 && --elementsLeft_ > 0 ? 16 : 10);
    if (kind == 0) return std::string(1, "\xc0\xc2\xc3"[Below(3)]);
    if (kind < 4) return Integer();
    if (kind < 6) return Float();
    if (kind == 6) return Bin();
    if (kind == 7 && isOdd_ && OneIn(4)) return Ext();
    if (kind < 10) return Str();
    if (kind < 13) return Map(depth);
    const std::uint64_t count = OneIn(3) ? 1 : Below(OneIn(20) ? 300 : 12);
    std::string packed = Head(0x90, 16, 0xdc, 2, count);
    for (std::uint64_t i = 0; i < count; ++i) packed += Any(depth - 1);
    return packed;
}

std::string RandomPacked::Map(int depth) {
    const std::uint64_t count = OneIn(3) ? 1 : Below(12);
    std::string packed = Head(0x80, 16, 0xde, 2, count);
    for (std::uint64_t i = 0; i < count; ++i) {
        packed += isOdd_ && OneIn(40) ? Any(depth - 1) : OneIn(6) ? Bin() : Str();
        packed += Any(depth - 1);
    }
    return packed;
}

/// Returns `number` in the short form, or in a long form of `width` bytes, twice that, and so on.
std::string RandomPacked::Head(unsigned shortForm, unsigned shortEnd, unsigned longForm, int width,
                               std::uint64_t number) {
    if (number < shortEnd && !OneIn(4)) return BigEndian(shortForm | number, 1);
    while (width < 4 && (number >> (8 * width) != 0 || OneIn(4))) {
        width *= 2;
        ++longForm;
    }
    return BigEndian(longForm, 1) + BigEndian(number, width);
}

std::string RandomPacked::Integer() {
    // Around a power of two, where the encodings and rapidjson's number flags change.
    const std::uint64_t number = (std::uint64_t{1} << Below(64)) + Below(5) - 2;
    if (OneIn(5)) return BigEndian(OneIn(2) ? number & 0x7f : number | 0xe0, 1);
    const std::uint64_t width = Below(4);
    const std::string head = BigEndian((OneIn(2) ? 0xcc : 0xd0) + width, 1);
    return head + BigEndian(OneIn(2) ? number : ~number, 1 << width);
}

std::string RandomPacked::Float() {
    const double small = static_cast<double>(Below(1000000));
    double number = small / (OneIn(2) ? 8 : 1000);  // includes ties between two hundredths
    if (OneIn(4))
        number += std::ldexp(1, 40 + static_cast<int>(Below(30)));  // too large for hundredths
    if (OneIn(4)) number = std::ldexp(number, -static_cast<int>(Below(90)));
    if (OneIn(4)) number = std::nextafter(number, OneIn(2) ? 0 : 1e300);
    std::uint64_t bits = BitsOf(OneIn(2) ? number : -number);
    if (OneIn(isOdd_ ? 20 : 100000)) bits |= 0x7ff0000000000000;  // NaN, or an infinity
    if (isOdd_ && OneIn(4)) bits = engine_();
    if (OneIn(4)) return "\xca" + BigEndian(bits >> (isOdd_ ? 32 : 35), 4);
    return "\xcb" + BigEndian(bits, 8);
}

std::string RandomPacked::Bytes() {
    const std::uint64_t kind = Below(3);
    std::string bytes(OneIn(2) ? kLengths[Below(std::size(kLengths))] : Below(24), 'x');
    for (char& byte : bytes) {
        byte = static_cast<char>(' ' + Below(95));
        if (kind == 0) byte = static_cast<char>(Below(256));
        if (kind == 1 && OneIn(8)) byte = "\"\\/\b\t\n\f\r\x7f\x1f"[Below(11)];
    }
    return bytes;
}

std::string RandomPacked::Str() {
    const std::string bytes = OneIn(3) ? std::string(1, 'a') : Bytes();
    return Head(0xa0, 32, 0xd9, 1, bytes.size()) + bytes;
}

std::string RandomPacked::Bin() {
    std::string bytes;
    while (isOdd_ && OneIn(2)) bytes += kBinParts[Below(std::size(kBinParts))];
    for (const char byte : Bytes()) {
        const bool isPlain = byte != '"' && byte != '\\' && static_cast<unsigned char>(byte) >= ' ';
        if (isPlain || (isOdd_ && OneIn(4))) bytes += byte;
    }
    return Head(0, 0, 0xc4, 1, bytes.size()) + bytes;
}

std::string RandomPacked::Ext() {
    const std::string bytes = Bytes().substr(0, 255);
    return "\xc7" + BigEndian(bytes.size(), 1) + "\x05" + bytes;
}

std::string RandomPacked::Mutated(std::string bytes) {
    for (std::uint64_t edits = 1 + Below(4); edits > 0; --edits) {
        const std::size_t at = Below(bytes.size() + 1);
        const std::uint64_t kind = at == bytes.size() ? 1 : Below(4);
        if (kind == 0) bytes[at] = static_cast<char>(engine_());
        if (kind == 1) bytes.insert(at, 1, static_cast<char>(0xc0 + Below(32)));
        if (kind == 2) bytes.erase(at, 1 + Below(8));
        if (kind == 3) bytes.insert(at, bytes.substr(at, 1 + Below(16)));
    }
    return bytes;
}
