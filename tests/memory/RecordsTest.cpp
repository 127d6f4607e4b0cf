#include <memory>

#include "records/CDEDataConfigFile.h"
#include "records/CDEDataShowCommand.h"
#include "records/CDEDataStructureData.h"
#include "tests/memory/Attempt.h"
#include "tests/support/Texts.h"

namespace {

CDeviceIdentifier Node() {
    CDeviceIdentifier id;
    id.SetHostName("N:a type of many bytes:an id of many bytes");
    return id;
}

CDeviceIdentifier Device() {
    return CDeviceIdentifier(VX128Guid("00112233-4455-6677-8899-aabbccddeeff"),
                             "a host name of many bytes", CVXDomain("a domain of many bytes"));
}

void Fill(CDEDataBase& record) {
    std::vector<CDETaskInfo> tasks(2);
    tasks[1].taskId = "a task of many bytes";
    record.SetTaskInfo(tasks);
    record.SetTime(1700000000000);
    record.SetData("interface GigabitEthernet0/1");
    record.SetErrorLog("an error of more than fifteen bytes");
    record.SetParam(Json(R"({"a parameter of many bytes":[1,"a text of many bytes"]})"));
    record.SetProperties(Json(R"([{"a":{"b":[]}}])"));
    record.SetDataMD5CA("a checksum of many bytes");
    record.SetTriggerKey("a trigger of many bytes");
}

/// All that a record shows.
std::string Show(CDEDataBase& record) {
    vxJson::Value status;
    record.GetDEStatus(status);
    const std::unique_ptr<vxJson::Value> document(record.GetDeviceDataJSon());
    return status.toString(false) + record.GetODJson().toString(false) + document->toString(false) +
           record.GetMetaMD5() + record.GetDataMD5() + record.GetDataMD5CA() +
           record.GetTriggerKey() + record.GetErrorLog() + record.GetDomainDBName();
}

template <class Make>
void Build(Attempt& attempt, Make make) {
    std::string shown;
    const bool done = attempt.Succeeds([&] {
        const auto record = make();
        Fill(*record);
        shown = Show(*record);
    });
    const auto record = make();
    Fill(*record);
    if (done) {
        EXPECT_EQ(shown, Show(*record));
    }
}

const Operation kBuilds[] = {
    {"a record of a node",
     [](Attempt& attempt) {
         const CDeviceIdentifier id = Node();
         Build(attempt, [&] { return std::make_unique<CDEDataBase>(id, DEDataTypeSysTable); });
     }},
    {"a configuration file",
     [](Attempt& attempt) {
         const CDeviceIdentifier id = Device();
         Build(attempt, [&] {
             auto record = std::make_unique<CDEDataConfigFile>(id);
             record->SetDataMD5("a checksum of many bytes");
             return record;
         });
     }},
    {"the output of a command",
     [](Attempt& attempt) {
         const CDeviceIdentifier id = Device();
         Build(attempt, [&] {
             auto record = std::make_unique<CDEDataShowCommand>(id);
             record->SetCommand("show ip interface brief");
             return record;
         });
     }},
    {"a structured result of nobody",
     [](Attempt& attempt) {
         Build(attempt, [] {
             auto record = std::make_unique<CDEDataStructureData>();
             record->SetLocation("a location of many bytes");
             return record;
         });
     }},
};

/// A view or key of a finished record, which is the same record afterwards.
template <class View>
void TakeView(Attempt& attempt, View view) {
    CDeviceIdentifier id = Device();
    CDEDataStructureData record(id, DEDataTypeParser);
    Fill(record);
    record.SetLocation("a location of many bytes");
    const std::string before = Show(record);
    attempt.Succeeds([&] { view(record); });
    EXPECT_EQ(Show(record), before);
}

const Operation kViews[] = {
    {"GetDEStatus",
     [](Attempt& attempt) {
         vxJson::Value out = Json(R"({"mine":1})");
         TakeView(attempt, [&](CDEDataBase& record) { record.GetDEStatus(out); });
         const vxJson::Value& kept = out;
         EXPECT_EQ(kept["mine"], vxJson::Value(1));
     }},
    {"GetODJson",
     [](Attempt& attempt) { TakeView(attempt, [](CDEDataBase& record) { record.GetODJson(); }); }},
    {"GetDeviceDataJSon",
     [](Attempt& attempt) {
         TakeView(attempt, [](CDEDataBase& record) { delete record.GetDeviceDataJSon(); });
     }},
    {"GetMetaMD5",
     [](Attempt& attempt) { TakeView(attempt, [](CDEDataBase& record) { record.GetMetaMD5(); }); }},
    {"GetDataMD5",
     [](Attempt& attempt) { TakeView(attempt, [](CDEDataBase& record) { record.GetDataMD5(); }); }},
    {"SetDataMD5CA, whose lock is free again",
     [](Attempt& attempt) {
         CDEDataBase record;
         const std::string text = "a checksum of many bytes";
         const bool done = attempt.Succeeds([&] { record.SetDataMD5CA(text); });
         EXPECT_EQ(record.GetDataMD5CA(), done ? text : "");
     }},
};

TEST(Memory, BuildsAndViewsARecord) {
    for (const Operation& operation : kBuilds) FailEveryAllocation(operation);
}

TEST(Memory, LeavesARecordAsItWas) {
    for (const Operation& operation : kViews) FailEveryAllocation(operation);
}

}  // namespace
