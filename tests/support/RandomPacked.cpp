#include "tests/support/RandomPacked.h"

#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>
#include <string_view>

namespace {

constexpr int kGreatestDepth = 30;

void AppendBigEndian(std::string& out, std::uint64_t number, int bytes) {
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
        out += static_cast<char>((number >> shift) & 0xff);
}

void AppendHeader(std::string& out, unsigned char header, std::uint64_t number, int bytes) {
    out += static_cast<char>(header);
    AppendBigEndian(out, number, bytes);
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

/// Writes `number` in its shortest form, or in the one `wider` steps behind it.
void AppendLength(std::string& out, const LengthForms& forms, std::uint64_t number,
                  std::uint64_t wider) {
    if (forms.fix != 0 && number <= forms.fixGreatest && wider-- == 0)
        out += static_cast<char>(forms.fix | number);
    else if (forms.one != 0 && number < 0x100 && wider-- == 0)
        AppendHeader(out, forms.one, number, 1);
    else if (number < 0x10000 && wider-- == 0)
        AppendHeader(out, forms.two, number, 2);
    else
        AppendHeader(out, forms.four, number, 4);
}

double FromBits(std::uint64_t bits) {
    double number;
    std::memcpy(&number, &bits, sizeof number);
    return number;
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
    std::string out;
    AppendValue(out, OneIn(4) ? 0 : kGreatestDepth);
    return out;
}

void RandomPacked::AppendValue(std::string& out, int depth) {
    --elementsLeft_;
    if (depth > 0 && elementsLeft_ > 0 && OneIn(3))
        AppendContainer(out, depth);
    else
        AppendScalar(out);
}

void RandomPacked::AppendContainer(std::string& out, int depth) {
    const bool map = OneIn(2);
    // A chain of containers with one element each is what reaches the greatest depth.
    const std::uint64_t count = OneIn(3) ? 1 : OneIn(30) ? Below(300) : Below(20);
    AppendLength(out, map ? kMapForms : kArrayForms, count, OneIn(4) ? Below(3) : 0);
    for (std::uint64_t i = 0; i < count; ++i) {
        if (map) AppendKey(out, depth);
        if (count == 1 && elementsLeft_ > 0 && depth > 1)
            AppendContainer(out, depth - 1);
        else
            AppendValue(out, depth - 1);
    }
}

void RandomPacked::AppendKey(std::string& out, int depth) {
    if (maySpoil_ && OneIn(60)) return AppendValue(out, depth - 1);
    if (OneIn(2)) return AppendStr(out, std::string(1, static_cast<char>('a' + Below(4))));
    if (OneIn(5)) return AppendBin(out, BinBytes());
    AppendStr(out, Bytes());
}

void RandomPacked::AppendScalar(std::string& out) {
    switch (Below(maySpoil_ && OneIn(10) ? 10 : 9)) {
        case 0:
            out += static_cast<char>(0xc0);
            return;
        case 1:
            out += static_cast<char>(OneIn(2) ? 0xc2 : 0xc3);
            return;
        case 2:
        case 3:
            return AppendInteger(out);
        case 4:
        case 5:
            return AppendFloat(out);
        case 6:
        case 7:
            return AppendStr(out, Bytes());
        case 8:
            return AppendBin(out, BinBytes());
        default:
            return AppendExt(out);
    }
}

void RandomPacked::AppendInteger(std::string& out) {
    // Around a power of two, where the encodings and rapidjson's number flags change.
    const std::uint64_t number = (std::uint64_t{1} << Below(64)) + Below(5) - 2;
    switch (Below(10)) {
        case 0:
            out += static_cast<char>(number & 0x7f);
            return;
        case 1:
            out += static_cast<char>(0xe0 | (number & 0x1f));
            return;
        default:
            break;
    }
    const int width = static_cast<int>(Below(4));
    AppendHeader(out, static_cast<unsigned char>((OneIn(2) ? 0xcc : 0xd0) + width),
                 OneIn(2) ? number : ~number, 1 << width);
}

double RandomPacked::Double() {
    const double sign = OneIn(2) ? 1 : -1;
    const double small = static_cast<double>(Below(100000));
    const double near = std::ldexp(static_cast<double>(Below(std::uint64_t{1} << 53)),
                                   static_cast<int>(Below(80)) - 80);
    switch (Below(12)) {
        case 0:  // any bits at all
            return FromBits(engine_());
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
            return sign * FromBits(Below(std::uint64_t{1} << 52));
        case 8:  // either zero, and what rounds to it
            return sign *
                   (OneIn(2) ? 0 : 0.005 * FromBits((engine_() >> 12) | 0x3ff0000000000000) / 2);
        case 9:  // the top of the range
            return sign * std::numeric_limits<double>::max() / static_cast<double>(1 + Below(20));
        default:
            return sign * near * (1 + small);
    }
}

void RandomPacked::AppendFloat(std::string& out) {
    double number = Double();
    if (maySpoil_ && OneIn(30))
        number = OneIn(2) ? std::nan("") : -std::numeric_limits<double>::infinity();
    else if (!maySpoil_ && !std::isfinite(number))
        number = 0.125;
    const float narrow = static_cast<float>(number);
    if (OneIn(3) && std::isfinite(narrow) == std::isfinite(number)) {
        std::uint32_t bits;
        std::memcpy(&bits, &narrow, sizeof bits);
        AppendHeader(out, 0xca, bits, 4);
    } else {
        std::uint64_t bits;
        std::memcpy(&bits, &number, sizeof bits);
        AppendHeader(out, 0xcb, bits, 8);
    }
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

std::string RandomPacked::BinBytes() {
    if (maySpoil_ && OneIn(6)) return Bytes();
    std::string bytes;
    if (OneIn(2)) bytes = kEscapedBins[Below(std::size(kEscapedBins))];
    if (maySpoil_ && OneIn(6)) bytes += kSpoilingBins[Below(std::size(kSpoilingBins))];
    for (std::size_t left = Length(); left > 0; --left) {
        const char byte = static_cast<char>(' ' + Below(95));
        if (byte != '"' && byte != '\\') bytes += byte;
    }
    return bytes;
}

void RandomPacked::AppendStr(std::string& out, const std::string& bytes) {
    AppendLength(out, kStrForms, bytes.size(), OneIn(4) ? Below(4) : 0);
    out += bytes;
}

void RandomPacked::AppendBin(std::string& out, const std::string& bytes) {
    AppendLength(out, kBinForms, bytes.size(), OneIn(4) ? Below(3) : 0);
    out += bytes;
}

void RandomPacked::AppendExt(std::string& out) {
    const std::size_t length = Below(20);
    if (OneIn(2)) {
        const std::uint64_t power = Below(5);
        out += static_cast<char>(0xd4 + power);
        out.append(1 + (std::size_t{1} << power), Byte());
    } else {
        AppendLength(out, kExtForms, length, Below(3));
        out.append(1 + length, Byte());
    }
}

std::string RandomPacked::Mutated(std::string bytes) {
    constexpr unsigned char kHeaders[] = {0xc1, 0xc0, 0x80, 0x90, 0xa0, 0xc4, 0xc6,
                                          0xc7, 0xc9, 0xca, 0xcb, 0xcf, 0xd3, 0xd4,
                                          0xdb, 0xdc, 0xdd, 0xde, 0xdf, 0xff};
    for (std::uint64_t edits = 1 + Below(4); edits > 0; --edits) {
        const std::size_t at = Below(bytes.size() + 1);
        if (at == bytes.size()) {
            bytes += Byte();
            continue;
        }
        switch (Below(6)) {
            case 0:
                bytes[at] = static_cast<char>(bytes[at] ^ (1 << Below(8)));
                break;
            case 1:
                bytes[at] = static_cast<char>(kHeaders[Below(std::size(kHeaders))]);
                break;
            case 2:
                bytes[at] = Byte();
                break;
            case 3:
                bytes.insert(at, 1, static_cast<char>(kHeaders[Below(std::size(kHeaders))]));
                break;
            case 4:
                bytes.erase(at, 1 + Below(8));
                break;
            default:
                bytes.insert(at, bytes.substr(at, 1 + Below(16)));
        }
    }
    return bytes;
}
