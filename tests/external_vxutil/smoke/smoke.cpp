// One walk through the data engine over the other utility library.
#include <iostream>
#include <memory>
#include <sstream>

#include "query/CDEStructureQueryInfo.h"
#include "records/CDEDataShowCommand.h"
#include "structure/CDEStructureDataHelper.h"
#include "structure/PackedFrameWriter.h"
#include "variables/VariableMappingDAO.h"

namespace {

int failures = 0;

void Expect(const std::string& actual, const std::string& expected) {
    if (actual == expected) return;
    std::cerr << "smoke: got " << actual << "\nsmoke: not " << expected << '\n';
    ++failures;
}

vxJson::Value Null() {
    return vxJson::Value(vxJson::ValueType(0), false);
}

vxJson::Value Json(const std::string& text) {
    vxJson::Value value = Null();
    std::istringstream stream(text);
    vxJson::Reader().parse(stream, value, true);
    return value;
}

void StoreARecord() {
    CDeviceIdentifier node;
    node.SetHostName("N:abc:def");
    CDEDataShowCommand record(node);
    record.SetCommand("show version");
    record.SetTime(86400);
    vxJson::Value status = Null();
    record.GetDEStatus(status);
    Expect(status.toString(false),
           R"({"devId":"def","name":"show version","param":null,"type":"cmd"})");
    Expect(std::to_string(record.GetDay()), "2");
    const std::unique_ptr<vxJson::Value> view(record.GetDeviceDataJSon());
    Expect((*view)["devName"].asString(), "");
}

void DecodeAnAnswer() {
    std::string name;
    vxJson::Value schema = Null();
    int offset = 0;
    CDEStructureDataHelper::GetBinaryDataInfo("\x01\xa1u\x90\x07", name, schema, offset);
    Expect(name + std::to_string(offset) + schema.toString(false), "u4[]");

    rapidjson::Document document;
    CDEStructureDataHelper::ParseBinaryDataToJson(
        "\x07", 1, Json(R"([{"name":"n","type":3,"index":0}])"), Json("[0]"), Null(), document);
    Expect(std::to_string(document[0]["value"].GetInt()), "7");
}

void WriteAFrame() {
    PackedFrameWriter writer("u");
    try {
        writer.AddColumn("c", 1, Json("[1]"));
        Expect("added", "rejected");
    } catch (const std::runtime_error& error) {
        Expect(error.what(), "column \"c\": no table has been added");
    }
    writer.AddLeaf("n", 3, Json(R"({"a":[7,"b"]})"));
    const std::string frame = writer.Frame();
    Expect(frame.substr(static_cast<unsigned>(writer.HeaderLength())),
           "\x81\xa1\x61\x92\x07\xa1\x62");
    Expect(writer.Offsets().toString(false), "[0]");
}

void LoadAMapping() {
    VariableMappingDAO mapping;
    mapping.LoadFromJson(
        Json(R"({"gvPath":"g","mappingVars":[{"deviceType":[3],"varName":"$v"}]})"));
    const MappingInstance instance = mapping.GetAllMappingVariable().at(0);
    Expect(mapping.GetGvPath() + instance.varName + std::to_string(*instance.deviceType.begin()),
           "gv3");
}

void PassAQueryOn() {
    CDEStructureQueryInfo query;
    query.LoadFromJson(Json(R"({"name":"path","devTypes":[3,-4]})"));
    vxJson::Value saved = Null();
    query.SaveToJson(saved);
    Expect(saved.toString(false),
           R"({"devTypes":[3,-4],"name":"path","param":null,"rtnFields":null})");
}

}  // namespace

int main() {
    StoreARecord();
    DecodeAnAnswer();
    WriteAFrame();
    LoadAMapping();
    PassAQueryOn();
    if (failures == 0) std::cout << "smoke: all is well\n";
    return failures == 0 ? 0 : 1;
}
