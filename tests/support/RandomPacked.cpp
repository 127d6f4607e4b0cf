#include "tests/support/RandomPacked.h"

#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>
#include <string_view>

#include "tests/support/Texts.h"

namespace {

constexpr int kGreatestDepth = 30;

std::string Headed(std::uint64_t header, std::uint64_t number, int count) {
    return BigEndian(header, 1) + BigEndian(number, count);
}

/// What a length or count is written in: a header with the number in its low bits for numbers up
/// to `fixGreatest`, or one of three headers in front of 1, 2 and 4 bytes. 0 is a missing form.
struct LengthForms {
    unsigned char fix;
    std::uint64_t fixGreatest;
    unsigned char one, two, four;
};

constexpr LengthForms kStrForms = {0xa0, 31, 0xd9, 0xda, 0xdb};
constexpr LengthForms kBinForms = {0, 0, 0xc4, 0xc5, 0xc6};
constexpr LengthForms kExtForms = {0, 0, 0xc7, 0xc8, 0xc9};
constexpr LengthForms kArrayForms = {0x90, 15, 0, 0xdc, 0xdd};
constexpr LengthForms kMapForms = {0x80, 15, 0, 0xde, 0xdf};

/// `number` in its shortest form, or in the one `wider` steps behind it.
std::string Sized(const LengthForms& forms, std::uint64_t number, std::uint64_t wider) {
    if (forms.fix != 0 && number <= forms.fixGreatest && wider-- == 0)
        return BigEndian(forms.fix | number, 1);
    if (forms.one != 0 && number < 0x100 && wider-- == 0) return Headed(forms.one, number, 1);
    if (number < 0x10000 && wider-- == 0) return Headed(forms.two, number, 2);
    return Headed(forms.four, number, 4);
}

/// The bits of `from` as another type of its size.
template <typename To, typename From>
To Bits(From from) {
    static_assert(sizeof(To) == sizeof(From));
    To to;
    std::memcpy(&to, &from, sizeof to);
    return to;
}

using std::string_view_literals::operator""sv;

// What a `bin` decodes from, and what must not pass for one string.
constexpr std::string_view kEscapedBins[] = {""sv,        R"(a\nb)"sv,         R"(\"quoted\")"sv,
                                             R"(\\)"sv,   R"(\/\b\f\r\t)"sv,   R"(a\u0000b)"sv,
                                             R"(é)"sv,    R"(\ud83d\ude00)"sv, R"(\udc00)"sv,
                                             "\x7f\xff"sv};
constexpr std::string_view kSpoilingBins[] = {
    R"(")"sv,   R"(a","b)"sv,  R"(a":1,"b)"sv, R"(\)"sv,       R"(a\)"sv,
    R"(\x)"sv,  R"(\u12g4)"sv, R"(\ud83d)"sv,  R"(\ud83dx)"sv, R"(\ud83d\u0041)"sv,
    "x\"\0y"sv, "a\0b"sv,      "\n"sv,         "a\x1f"sv,      R"(a" ,"b)"sv,
    R"("")"sv,  R"(x" )"sv,    R"(\u00)"sv,    R"(],["a)"sv,   R"(a"],["b)"sv};

}  // namespace

std::string RandomPacked::Value() {
    maySpoil_ = OneIn(3);
    elementsLeft_ = OneIn(20) ? 1000 : 60;
    return Any(OneIn(4) ? 0 : kGreatestDepth);
}

std::string RandomPacked::Any(int depth) {
    --elementsLeft_;
    return depth > 0 && elementsLeft_ > 0 && OneIn(3) ? Container(depth) : Scalar();
}

std::string RandomPacked::Container(int depth) {
    const bool map = OneIn(2);
    // A chain of containers with one element each is what reaches the greatest depth.
    const std::uint64_t count = OneIn(3) ? 1 : OneIn(30) ? Below(300) : Below(20);
    std::string packed = Sized(map ? kMapForms : kArrayForms, count, OneIn(4) ? Below(3) : 0);
    for (std::uint64_t i = 0; i < count; ++i) {
        if (map) packed += Key(depth);
        const bool chain = count == 1 && elementsLeft_ > 0 && depth > 1;
        packed += chain ? Container(depth - 1) : Any(depth - 1);
    }
    return packed;
}

std::string RandomPacked::Key(int depth) {
    if (maySpoil_ && OneIn(60)) return Any(depth - 1);
    if (OneIn(2)) return Str(std::string(1, static_cast<char>('a' + Below(4))));
    return OneIn(5) ? Bin() : Str(Bytes());
}

std::string RandomPacked::Scalar() {
    const std::uint64_t kind = Below(maySpoil_ && OneIn(10) ? 10 : 9);
    if (kind == 0) return "\xc0";
    if (kind == 1) return OneIn(2) ? "\xc2" : "\xc3";
    if (kind < 4) return Integer();
    if (kind < 6) return Float();
    if (kind < 8) return Str(Bytes());
    return kind == 8 ? Bin() : Ext();
}

std::string RandomPacked::Integer() {
    // Around a power of two, where the encodings and rapidjson's number flags change.
    const std::uint64_t number = (std::uint64_t{1} << Below(64)) + Below(5) - 2;
    if (OneIn(10)) return BigEndian(number & 0x7f, 1);
    if (OneIn(10)) return BigEndian(number | 0xe0, 1);
    const std::uint64_t width = Below(4);
    return Headed((OneIn(2) ? 0xcc : 0xd0) + width, OneIn(2) ? number : ~number, 1 << width);
}

double RandomPacked::Double() {
    const double sign = OneIn(2) ? 1 : -1;
    const double small = static_cast<double>(Below(100000));
    const double near = std::ldexp(static_cast<double>(Below(std::uint64_t{1} << 53)),
                                   static_cast<int>(Below(80)) - 80);
    switch (Below(12)) {
        case 0:  // any bits at all
            return Bits<double>(engine_());
        case 1:  // a tie between two hundredths, exact in binary
            return sign * (small + 0.125 + 0.25 * static_cast<double>(Below(4)));
        case 2:  // next to a tie that binary can't hold
            return sign * std::nextafter(small / 1000 + 0.005, OneIn(2) ? 0 : 1e9);
        case 3:
            return sign * (small / 1000 + 0.005);
        case 4:  // already two decimals
            return sign * small / 100;
        case 5:  // whole numbers around 2^53, where hundredths end
            return sign * (std::ldexp(1, 44 + static_cast<int>(Below(24))) + small / 8);
        case 6:  // powers of ten and their neighbours
            return sign * std::nextafter(std::pow(10, static_cast<double>(Below(616)) - 307),
                                         OneIn(2) ? 0 : 1e308);
        case 7:  // subnormal
            return sign * Bits<double>(Below(std::uint64_t{1} << 52));
        case 8:  // either zero, and what rounds to it
            return sign * (OneIn(2)
                               ? 0
                               : 0.005 * Bits<double>((engine_() >> 12) | 0x3ff0000000000000) / 2);
        case 9:  // the top of the range
            return sign * std::numeric_limits<double>::max() / static_cast<double>(1 + Below(20));
        default:
            return sign * near * (1 + small);
    }
}

std::string RandomPacked::Float() {
    double number = Double();
    if (maySpoil_ && OneIn(30))
        number = OneIn(2) ? std::nan("") : -std::numeric_limits<double>::infinity();
    else if (!maySpoil_ && !std::isfinite(number))
        number = 0.125;
    const float narrow = static_cast<float>(number);
    if (OneIn(3) && std::isfinite(narrow) == std::isfinite(number))
        return Headed(0xca, Bits<std::uint32_t>(narrow), 4);
    return Headed(0xcb, Bits<std::uint64_t>(number), 8);
}

std::size_t RandomPacked::Length() {
    // Where encodings change, and rapidjson's strings stop being short.
    constexpr std::size_t kEdges[] = {0, 1, 12, 13, 14, 15, 16, 17, 31, 32, 33, 64, 255, 256};
    if (OneIn(2000)) return 65535 + Below(3);
    return OneIn(3) ? kEdges[Below(std::size(kEdges))] : Below(24);
}

std::string RandomPacked::Bytes() {
    std::string bytes(Length(), 'x');
    const std::uint64_t kind = Below(4);
    for (char& byte : bytes) {
        if (kind == 0)
            byte = Byte();
        else if (kind == 1 && OneIn(8))
            byte = "\"\\/\b\t\n\f\r\x7f\x1f"[Below(11)];  // the terminator counts
        else
            byte = static_cast<char>(' ' + Below(95));
    }
    return bytes;
}

std::string RandomPacked::Str(const std::string& bytes) {
    return Sized(kStrForms, bytes.size(), OneIn(4) ? Below(4) : 0) + bytes;
}

std::string RandomPacked::Bin() {
    std::string bytes;
    if (OneIn(2)) bytes = kEscapedBins[Below(std::size(kEscapedBins))];
    if (maySpoil_ && OneIn(6)) bytes += kSpoilingBins[Below(std::size(kSpoilingBins))];
    for (std::size_t left = Length(); left > 0; --left) {
        const char byte = static_cast<char>(' ' + Below(95));
        if (byte != '"' && byte != '\\') bytes += byte;
    }
    if (maySpoil_ && OneIn(6)) bytes = Bytes();
    return Sized(kBinForms, bytes.size(), OneIn(4) ? Below(3) : 0) + bytes;
}

std::string RandomPacked::Ext() {
    const std::uint64_t power = Below(5), length = Below(20);
    if (OneIn(2)) return BigEndian(0xd4 + power, 1) + std::string(1 + (1u << power), Byte());
    return Sized(kExtForms, length, Below(3)) + std::string(1 + length, Byte());
}

std::string RandomPacked::Mutated(std::string bytes) {
    constexpr std::string_view kHeaders =
        "\xc1\xc0\x80\x90\xa0\xc4\xc6\xc7\xc9\xca\xcb\xcf\xd3\xd4\xdb\xdc\xdd\xde\xdf\xff";
    for (std::uint64_t edits = 1 + Below(4); edits > 0; --edits) {
        const std::size_t at = Below(bytes.size() + 1);
        const char header = kHeaders[Below(kHeaders.size())];
        const std::uint64_t kind = at == bytes.size() ? 2 : Below(6);
        if (kind == 0) bytes[at] = static_cast<char>(bytes[at] ^ (1 << Below(8)));
        if (kind == 1) bytes[at] = header;
        if (kind == 2) bytes.replace(at, 1, 1, Byte());
        if (kind == 3) bytes.insert(at, 1, header);
        if (kind == 4) bytes.erase(at, 1 + Below(8));
        if (kind == 5) bytes.insert(at, bytes.substr(at, 1 + Below(16)));
    }
    return bytes;
}
