// Sends a query to another process and its result back, both as JSON text.
#include <VxUtil/vxJson.h>

#include <iostream>

#include "query/CDEQueryResultStructureData.h"
#include "query/CDEStructureQueryInfo.h"
#include "records/CDEDataBase.h"

/// Returns the JSON text of `message`, which any transport can carry.
std::string Send(const IJsonSerialize& message) {
    vxJson::Value json;
    message.SaveToJson(json);
    return json.toString(false);
}

/// Loads received JSON text into `message`.
void Receive(const std::string& text, IJsonSerialize& message) {
    message.LoadFromJson(vxJson::Parse(text));
}

/// Runs in the store: answers the query in `text` with the text of a result.
std::string Answer(const std::string& text) {
    CDEStructureQueryInfo query;
    Receive(text, query);

    CDEQueryResultStructureData result;
    result.SetTime(1740982361000);
    result.Get_mutable_ResultMetaDataOnly().SetDeviceId("acc-sw-17");
    result.Get_mutable_ResultMetaDataOnly().SetType(CDEDataBase::TypeInt2Str(DEDataTypeParser));
    result.Get_mutable_ResultMetaDataOnly().SetName(query.GetLocation());
    // A store decodes the frame into GetData(); see read_a_frame.cpp.
    result.GetData().Parse(R"([{"type": 1, "name": "hostname", "value": "acc-sw-17"}])");
    return Send(result);
}

int main() {
    CDEStructureQueryInfo query;
    query.SetLocation("inventory/interfaces");
    query.GetRtnFields().append("hostname");
    query.SetDevTypes({2001});
    const std::string question = Send(query);
    std::cout << "query: " << question << '\n';

    CDEQueryResultStructureData result;
    Receive(Answer(question), result);
    const rapidjson::Value& item = result.GetData_RO()[0];
    std::cout << result.GetResultMetaDataOnly().toPrintString() << item["name"].GetString() << " = "
              << item["value"].GetString() << '\n';
}
