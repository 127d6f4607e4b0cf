#include <gtest/gtest.h>

#include <map>
#include <memory>

#include "Devices.h"
#include "records/CDEDataShowCommand.h"
#include "records/CDEDataStructureData.h"
#include "schema/StoreNames.h"
#include "tests/support/Texts.h"

namespace {

std::string StatusText(const CDEDataBase& record) {
    vxJson::Value out;
    EXPECT_TRUE(record.GetDEStatus(out));
    return out.toString(false);
}

std::string DeviceDataText(CDEDataBase& record) {
    const std::unique_ptr<vxJson::Value> view(record.GetDeviceDataJSon());
    return view->toString(false);
}

// The store receives these texts.
TEST(Views, OfABlankRecord) {
    CDEDataBase record;
    EXPECT_EQ(StatusText(record),
              R"({"devId":"00000000-0000-0000-0000-000000000000","name":"","param":null,)"
              R"("type":"none"})");
    EXPECT_EQ(record.GetODJson().toString(false),
              R"({"data":{"$binary":{"base64":"","subType":"00"}},)"
              R"("devId":"00000000-0000-0000-0000-000000000000","flag":0,)"
              R"("md5":"99aa06d3014798d86001c324468d497f","name":"",)"
              R"("time":{"$date":{"$numberLong":"0"}},"type":"none"})");
    EXPECT_EQ(DeviceDataText(record),
              R"({"content":"","devId":"00000000-0000-0000-0000-000000000000","devName":"",)"
              R"("length":0,"name":"","subName":null,"type":"none",)"
              R"("uploadDate":{"$date":{"$numberLong":"0"}}})");
}

TEST(Views, OfAFullRecord) {
    CDeviceIdentifier device = Device("router1");
    CDEDataStructureData record(device, DEDataTypeParser);
    record.SetLocation("path/bgp");
    record.SetTime(1700000000123);
    record.SetFlag(-7);
    record.SetErrorLog("late");
    record.SetData(std::string("a\0b", 3));
    record.SetParam(Json(R"({"vrf":"red"})"));
    record.SetProperties(Json(R"(["x"])"));
    EXPECT_EQ(StatusText(record),
              R"({"devId":"0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0","name":"path/bgp",)"
              R"("param":{"vrf":"red"},"props":["x"],"type":"parser"})");
    EXPECT_EQ(record.GetODJson().toString(false),
              R"({"data":{"$binary":{"base64":"YQBi","subType":"00"}},)"
              R"("devId":"0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0","errorLog":"late","flag":-7,)"
              R"("md5":"39797789ed4c7ea0d5a06cd078125351","name":"path/bgp","param":{"vrf":"red"},)"
              R"("props":["x"],"time":{"$date":{"$numberLong":"1700000000123"}},"type":"parser"})");
    EXPECT_EQ(DeviceDataText(record),
              R"({"content":"a\u0000b","devId":"0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0",)"
              R"("devName":"router1","length":3,"name":"path/bgp","subName":{"vrf":"red"},)"
              R"("type":"parser","uploadDate":{"$date":{"$numberLong":"1700000000123"}}})");

    vxJson::Value out = Json(R"({"kept":1,"param":2})");
    record.GetDEStatus(out);
    EXPECT_EQ(out["kept"].asInt(), 1);
    EXPECT_TRUE(out["param"].isObject());
}

TEST(Views, LeaveEmptyValuesOut) {
    CDEDataBase record;
    record.SetParam(Json("{}"));
    record.SetProperties(Json("[]"));
    EXPECT_TRUE(record.GetODJson()["param"].isNull());
    EXPECT_TRUE(record.GetODJson()["props"].isNull());
    vxJson::Value status;
    record.GetDEStatus(status);
    EXPECT_TRUE(status["param"].isObject());
    EXPECT_TRUE(status["props"].isNull());
}

TEST(Views, CutTheErrorLog) {
    for (const std::size_t size : {1U, 1023U, 1024U, 1025U, 2000U}) {
        CDEDataBase record;
        const std::string log = std::string(size - 1, 'x') + "y";
        record.SetErrorLog(log);
        EXPECT_EQ(record.GetODJson()["errorLog"].asString(), log.substr(0, 1024)) << size;
        EXPECT_EQ(record.GetErrorLog(), log) << size;
    }
}

TEST(Views, OfASystemTableGiveItsNameAsType) {
    CDeviceIdentifier device = Device("router1");
    CDEDataStructureData record(device, DEDataTypeSysTable);
    record.SetLocation("arpTable");
    std::unique_ptr<vxJson::Value> view(record.GetDeviceDataJSon());
    EXPECT_EQ((*view)["type"].asString(), "arpTable");
    EXPECT_EQ((*view)["name"].asString(), "");
    record.SetType(DEDataTypeNctTable);
    view.reset(record.GetDeviceDataJSon());
    EXPECT_EQ((*view)["type"].asString(), "nctTable");
    EXPECT_EQ((*view)["name"].asString(), "arpTable");
}

TEST(Views, OfDeviceDataHaveTheKeysOfTheStoredDocument) {
    namespace names = StoreNames::DeviceData;
    CDEDataBase record;
    const std::unique_ptr<vxJson::Value> view(record.GetDeviceDataJSon());
    vxJson::Value expected;
    for (const std::string& key :
         {names::devId, names::devName, names::type, names::name, names::uploadDate, names::subName,
          names::content, names::length}) {
        expected[key] = (*view)[key];
    }
    EXPECT_EQ(*view, expected);
}

class NamedRecord : public CDEDataBase {
  public:
    using CDEDataBase::CDEDataBase;
    std::string GetName() const override { return "own name"; }
    std::string GetDataMD5() override { return "own key"; }
    std::string GetDataMD5CA() override { return "own checksum"; }
};

TEST(Views, ReachTheOperationsOfASubclass) {
    NamedRecord record(Device("router1"), DEDataTypeCmd);
    CDEDataShowCommand sameName(Device("router1"));
    sameName.SetCommand("own name");
    EXPECT_EQ(record.GetMetaMD5(), sameName.GetMetaMD5());
    EXPECT_EQ(record.GetODJson()["name"].asString(), "own name");
    EXPECT_EQ(record.GetODJson()["md5"].asString(), "own key");
    vxJson::Value status;
    record.GetDEStatus(status);
    EXPECT_EQ(status["name"].asString(), "own name");
    record.SetType(DEDataTypeSysTable);
    EXPECT_EQ(record.CDEDataBase::GetDataMD5(), "own checksum");
    EXPECT_EQ(Json(DeviceDataText(record))["type"].asString(), "own name");
}

}  // namespace
