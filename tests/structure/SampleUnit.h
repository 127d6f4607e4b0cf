#pragma once

#include <string>

#include "structure/PackedFrameWriter.h"
#include "tests/support/Texts.h"

/// The unit of docs/packed-format.md: a leaf, and a table of two columns and an attribute.
namespace SampleUnit {

constexpr char kSchema[] = R"([
    {"name":"hostname","type":1,"index":0},
    {"name":"ifTable","type":11,"index":1,"hashSort":true,"hashColumns":["ifName"],
     "column":[{"name":"ifName","type":1,"index":0},{"name":"speed","type":3,"index":1}],
     "attributes":[{"name":"vrf","type":1,"index":2}]}])";

constexpr char kOffsets[] = "[0,[3,16,29]]";

inline dataengine::PackedFrameWriter Written() {
    dataengine::PackedFrameWriter writer("demo");
    writer.AddLeaf("hostname", 1, "r1");
    auto table = writer.AddTable("ifTable", true, {"ifName"});
    table.AddColumn("ifName", 1, Json(R"(["Gi0/1","Gi0/2"])"));
    table.AddColumn("speed", 3, Json("[1000,2.5]"));
    table.AddAttribute("vrf", 1, "blue");
    return writer;
}

/// Version, name and schema: 186 bytes.
inline std::string Header() {
    return Written().Frame().substr(0, 186);
}

/// The four values: 34 bytes.
inline std::string Payload() {
    return Written().Frame().substr(186);
}

}  // namespace SampleUnit
