// Packs a leaf and a table into a frame, and prints where each value is stored.
#include <VxUtil/vxJson.h>

#include <iostream>

#include "structure/PackedFrameWriter.h"

int main() {
    vxJson::Value names, speeds;
    for (int port = 1; port <= 3; ++port) {
        names.append("Gi0/" + std::to_string(port));
        speeds.append(1000 * port);
    }

    // 11 marks a table; all other type numbers are passed through to the reader.
    dataengine::PackedFrameWriter writer("inventory/interfaces");
    writer.AddLeaf("hostname", 1, "acc-sw-17");
    dataengine::PackedFrameWriter::Table table = writer.AddTable("ifTable", true, {"ifName"});
    table.AddColumn("ifName", 1, names);
    table.AddColumn("speed", 2, speeds);
    table.AddAttribute("vrf", 1, "blue");

    // The offsets are not part of the frame: store them with it.
    const std::string frame = writer.Frame();
    std::cout << frame.size() << " bytes, of which the header takes " << writer.HeaderLength()
              << '\n'
              << "offsets from the end of the header: " << writer.Offsets().toString(false) << '\n';
}
