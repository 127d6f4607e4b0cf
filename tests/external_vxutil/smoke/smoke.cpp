// Walks through the data engine over a third-party VxUtil.
#include <iostream>
#include <memory>
#include <sstream>

#include "query/CDEStructureQueryInfo.h"
#include "records/CDEDataShowCommand.h"
#include "structure/CDEStructureDataHelper.h"
#include "structure/PackedFrameReader.h"
#include "structure/PackedFrameWriter.h"
#include "variables/VariableMappingDAO.h"

vxJson::Value Json(const std::string& text) {
    vxJson::Value value(vxJson::ValueType(0), false);
    std::istringstream stream(text);
    vxJson::Reader().parse(stream, value, true);
    return value;
}

std::string Record() {
    CDeviceIdentifier node;
    node.SetHostName("N:abc:def");
    CDEDataShowCommand record(node);
    record.SetCommand("show version");
    record.SetTime(86400);
    vxJson::Value status = Json("null");
    record.GetDEStatus(status);
    const std::unique_ptr<vxJson::Value> view(record.GetDeviceDataJSon());
    return status.toString(false) + std::to_string(record.GetDay()) + (*view)["devName"].asString();
}

std::string Frame() {
    std::string name;
    vxJson::Value schema = Json("null");
    int offset = 0;
    CDEStructureDataHelper::GetBinaryDataInfo("\x01\xa1u\x92\xc3\x80\x07", name, schema, offset);
    rapidjson::Document document;
    CDEStructureDataHelper::ParseBinaryDataToJson("\x07", 1,
                                                  Json(R"([{"name":"n","type":3,"index":0}])"),
                                                  Json("[0]"), Json("null"), document);
    return name + schema.toString(false) + std::to_string(document[0]["value"].GetInt() - offset);
}

std::string WrittenFrame() {
    dataengine::PackedFrameWriter writer("u");
    writer.AddLeaf("n", 3, Json(R"({"a":[7,"b"]})"));
    const auto headerLength = static_cast<std::size_t>(writer.HeaderLength());
    return writer.Frame().substr(headerLength) + writer.Offsets().toString(false);
}

std::string ReadFrame() {
    dataengine::PackedFrameWriter writer("u");
    writer.AddLeaf("n", 3, Json("7"));
    auto table = writer.AddTable("t", false, {});
    table.AddColumn("c", 1, Json("[8,9]"));
    const std::string frame = writer.Frame();
    dataengine::PackedFrameReader reader(Json(R"(["t","n"])"));
    rapidjson::Document document;
    if (!reader.Open(frame) || !reader.Decode(document)) return "not read";
    const std::string read = std::to_string(document[0]["column"][0]["value"][1].GetInt()) +
                             std::to_string(document[1]["value"].GetInt());
    try {
        reader.Decode(Json("[0,[99]]"), document);
    } catch (const std::exception& error) {
        return read + error.what();
    }
    return read;
}

std::string Query() {
    CDEStructureQueryInfo query;
    query.LoadFromJson(Json(R"({"name":"path","devTypes":[3,-4]})"));
    vxJson::Value saved = Json("null");
    query.SaveToJson(saved);
    return saved.toString(false);
}

std::string Mapping() {
    VariableMappingDAO mapping;
    mapping.LoadFromJson(Json(R"({"gvPath":"g","mappingVars":[{"varName":"$v"}]})"));
    return mapping.GetGvPath() + mapping.GetAllMappingVariable().at(0).varName;
}

int main() {
    const std::string rows[][2] = {
        {Record(), R"({"devId":"def","name":"show version","param":null,"type":"cmd"}2)"},
        {Frame(), "u[true,{}]1"},
        {ReadFrame(), "97t.c: byte 209: the value begins outside the payload"},
        {WrittenFrame(), "\x81\xa1\x61\x92\x07\xa1\x62[0]"},
        {Query(), R"({"devTypes":[3,-4],"name":"path","param":null,"rtnFields":null})"},
        {Mapping(), "gv"},
    };
    int failures = 0;
    for (const auto& [actual, expected] : rows) {
        if (actual == expected) continue;
        std::cerr << "smoke: " << actual << "\nsmoke: not " << expected << '\n';
        ++failures;
    }
    return failures;
}
