// Reads the header of a packed frame and decodes the selected values only.
#include <VxUtil/vxJson.h>
#include <rapidjson/document.h>

#include <iostream>
#include <msgpack.hpp>
#include <sstream>

#include "structure/CDEStructureDataHelper.h"
#include "structure/PackedFrameWriter.h"

// [a structured answer out of the store]
/// Decodes the selected items of `frame` into `document`. Returns false if the frame is of another
/// version, or if `offsets` or `selection` is not an array. Throws if the frame is damaged.
bool Decode(const std::string& frame, const vxJson::Value& offsets, const vxJson::Value& selection,
            rapidjson::Document& document) {
    std::string name;
    vxJson::Value schema;
    int header = 0;  // the offsets count from its end
    return CDEStructureDataHelper::GetBinaryDataInfo(frame, name, schema, header) &&
           CDEStructureDataHelper::ParseBinaryDataToJson(frame.data() + header,
                                                         static_cast<int>(frame.size()) - header,
                                                         schema, offsets, selection, document);
}
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
    vxJson::Value selection;
    std::istringstream text(R"(["hostname", {"table": "ifTable", "column": ["rate"]}])");
    vxJson::Reader().parse(text, selection, true);

    rapidjson::Document document;
    if (!Decode(writer.Frame(), writer.Offsets(), selection, document)) return 1;
    std::cout << document[0]["name"].GetString() << " is " << document[0]["value"].GetString()
              << '\n'
              << "the first rate is " << document[1]["column"][0]["value"][0].GetDouble() << '\n';

    try {
        Decode(writer.Frame().substr(0, 40), writer.Offsets(), selection, document);
    } catch (const msgpack::insufficient_bytes& error) {
        std::cout << "a frame cut short: " << error.what() << '\n';
    }
}
