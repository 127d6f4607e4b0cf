#pragma once

#include <string>

#include "tests/support/Texts.h"

/// A unit named demo: a leaf, and a table of two columns and an attribute.
namespace SampleUnit {

constexpr char kSchema[] = R"([
    {"name":"hostname","type":1,"index":0},
    {"name":"ifTable","type":11,"index":1,"hashSort":true,"hashColumns":["ifName"],
     "column":[{"name":"ifName","type":1,"index":0},{"name":"speed","type":3,"index":1}],
     "attributes":[{"name":"vrf","type":1,"index":2}]}])";

constexpr char kOffsets[] = "[0,[3,16,29]]";

/// Version, name and schema: 186 bytes.
inline std::string Header() {
    return Hex(
        "01 a4 64656d6f 92"
        "83 a4 6e616d65 a8 686f73746e616d65 a4 74797065 01 a5 696e646578 00"
        "87 a4 6e616d65 a7 69665461626c65 a4 74797065 0b a5 696e646578 01"
        "   a8 68617368536f7274 c3 ab 68617368436f6c756d6e73 91 a6 69664e616d65"
        "   a6 636f6c756d6e 92"
        "      83 a4 6e616d65 a6 69664e616d65 a4 74797065 01 a5 696e646578 00"
        "      83 a4 6e616d65 a5 7370656564 a4 74797065 03 a5 696e646578 01"
        "   aa 61747472696275746573 91"
        "      83 a4 6e616d65 a3 767266 a4 74797065 01 a5 696e646578 02");
}

/// The four values: 34 bytes.
inline std::string Payload() {
    return Hex(
        "a2 7231"
        "92 a5 4769302f31 a5 4769302f32"
        "92 cd 03e8 cb 4004000000000000"
        "a4 626c7565");
}

}  // namespace SampleUnit
