// Reads packed frames and decodes the selected values only.
#include <VxUtil/vxJson.h>
#include <rapidjson/document.h>

#include <iostream>
#include <msgpack.hpp>
#include <string>

#include "structure/PackedFrameReader.h"
#include "structure/PackedFrameWriter.h"

// [quoted]
/// Decodes the frames of one parser, one after the other. A reader is kept for all of them, since
/// it remembers their header and what the selection comes to in its schema.
class DeviceFrames {
  public:
    explicit DeviceFrames(const vxJson::Value& selection) : reader_(selection) {}

    void Print(const std::string& frame, const vxJson::Value& offsets) {
        rapidjson::Document document;
        if (!reader_.Open(frame) || !reader_.Decode(offsets, document)) return;
        std::cout << document[0]["name"].GetString() << " is " << document[0]["value"].GetString()
                  << ", the first rate is " << document[1]["column"][0]["value"][0].GetDouble()
                  << '\n';
    }

  private:
    dataengine::PackedFrameReader reader_;
};
// [end]

int main() {
    dataengine::PackedFrameWriter writer("inventory/interfaces");
    writer.AddLeaf("hostname", 1, "acc-sw-17");
    auto table = writer.AddTable("ifTable", true, {"ifName"});
    vxJson::Value names, rates;
    names.append("Gi0/1");
    rates.append(1.618);
    table.AddColumn("ifName", 1, names);
    table.AddColumn("rate", 3, rates);

    // Null selects everything; this selects the leaf and one column.
    const vxJson::Value selection =
        vxJson::Parse(R"(["hostname", {"table": "ifTable", "column": ["rate"]}])");

    DeviceFrames frames(selection);
    frames.Print(writer.Frame(), writer.Offsets());
    try {
        const std::string cut = writer.Frame().substr(0, writer.Frame().size() - 3);
        frames.Print(cut, writer.Offsets());
    } catch (const msgpack::insufficient_bytes& error) {
        std::cout << "a frame cut short: " << error.what() << '\n';
    }
}
