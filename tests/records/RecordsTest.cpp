#include <VxUtil/CDeviceIdentifier.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "records/CDEDataBase.h"
#include "records/CDEDataConfigFile.h"
#include "records/CDEDataShowCommand.h"
#include "records/CDEDataStructureData.h"
#include "tests/support/Rows.h"
#include "tests/support/Texts.h"

namespace {

const std::string kGuid = "0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0";
const std::string kNoGuid = "00000000-0000-0000-0000-000000000000";

CDeviceIdentifier Device(const std::string& hostName) {
    return {VX128Guid(kGuid), hostName, CVXDomain("Tenant_1")};
}

CDeviceIdentifier Node(const std::string& hostName) {
    return {VX128Guid(), hostName};
}

vxJson::Value Status(const CDEDataBase& record) {
    vxJson::Value out = Json(R"({"param":"replaced"})");
    EXPECT_TRUE(record.GetDEStatus(out));
    return out;
}

vxJson::Value DeviceData(CDEDataBase& record) {
    const std::unique_ptr<vxJson::Value> view(record.GetDeviceDataJSon());
    return *view;
}

TEST(Records, SettleTheirIdentityFromTheHostName) {
    for (const auto& row : RowsOf(TEST_DATA "/hosts.txt")) {
        SCOPED_TRACE(row[0]);
        const std::string devId = row[2] == "-" ? kNoGuid : row[2] == "empty" ? "" : row[2];
        CDeviceIdentifier device = Node(row[0]);
        CDEDataConfigFile file = device;
        CDEDataShowCommand command = device;
        CDEDataStructureData structure(device, DEDataTypeParser);
        for (CDEDataBase* record :
             std::initializer_list<CDEDataBase*>{&file, &command, &structure}) {
            EXPECT_EQ(record->GetDevId(), devId);
            EXPECT_EQ(DeviceData(*record)["devName"].asString(), row[1]);
        }
        EXPECT_EQ(device.GetHostName(), row[0]);
    }
    CDEDataBase valid(Device("N:abc:def"), DEDataTypeRaw);
    EXPECT_EQ(valid.GetDevId(), kGuid);
    EXPECT_EQ(DeviceData(valid)["devName"].asString(), "N:abc:def");
}

TEST(Records, KeepTheNodeThatTheyWereBuiltFrom) {
    CDEDataBase record(Node("N:abc:def"), DEDataTypeRaw);
    record.SetDevId(Node("N:other:node"));
    EXPECT_EQ(record.GetDevId(), "def");
    EXPECT_EQ(DeviceData(record)["devName"].asString(), "N:other:node");
    record.SetDevId(Device("router1"));
    EXPECT_EQ(record.GetDevId(), kGuid);
    EXPECT_EQ(record.GetDomainDBName(), "Tenant_1");
    record.SetDomain(CVXDomain("Tenant_2"));
    EXPECT_EQ(record.GetDomainDBName(), "Tenant_2");
}

TEST(Records, HaveATypeWithATextBothWays) {
    const std::pair<EnumDEDataType, const char*> types[] = {{DEDataTypeNone, "none"},
                                                            {DEDataTypeConfig, "config"},
                                                            {DEDataTypeCmd, "cmd"},
                                                            {DEDataTypeSysTable, "sysTable"},
                                                            {DEDataTypeNctTable, "nctTable"},
                                                            {DEDataTypeParser, "parser"},
                                                            {DEDataTypePingTrace, "pingtrace"},
                                                            {DEDataTypeRaw, "raw"}};
    int number = 0;
    for (const auto& [type, text] : types) {
        EXPECT_EQ(type, number++) << text;
        EXPECT_EQ(CDEDataBase::TypeStr2Int(text), type) << text;
        EXPECT_EQ(CDEDataBase::TypeInt2Str(type), text);
    }
    for (const int other : {-1, 8, 2147483647, -2147483647 - 1}) {
        EXPECT_EQ(CDEDataBase::TypeInt2Str(static_cast<EnumDEDataType>(other)), "none") << other;
    }
    for (const std::string& other : {std::string("Config"), std::string("cmd\0", 4)}) {
        EXPECT_EQ(CDEDataBase::TypeStr2Int(other), DEDataTypeNone) << other;
    }
    EXPECT_EQ(CDEDataConfigFile().GetType(), DEDataTypeConfig);
    EXPECT_EQ(CDEDataShowCommand().GetType(), DEDataTypeCmd);
    EXPECT_EQ(CDEDataStructureData().GetType(), DEDataTypeNone);
}

TEST(Records, StartWithTheirDefaults) {
    CDEDataBase record;
    EXPECT_EQ(record.GetDataSource(), -1);
    EXPECT_TRUE(record.GetIsUpdateDataStatus() && record.GetJsonForGBAlert().isNull());
    EXPECT_FALSE(record.IsNeedTrigger());
    record.SetTriggerKey("key");
    EXPECT_TRUE(record.IsNeedTrigger());
    record.SetTime(1709251199999);  // the last millisecond of 29 February 2024
    EXPECT_EQ(record.GetDay(), 29);
    record.SetTime(record.GetTime() + 1);
    EXPECT_EQ(record.GetDay(), 1);
}

TEST(Records, TellTheKindsOfTheirTasks) {
    CDEDataBase record;
    for (const std::string kinds : {"so", "", "oo", "s"}) {
        SCOPED_TRACE(kinds);
        std::vector<CDETaskInfo> tasks;
        for (const char kind : kinds) tasks.push_back({"task", 3, kind == 'o', "extra"});
        record.SetTaskInfo(tasks);
        EXPECT_EQ(record.GetTaskInfo().size(), tasks.size());
        EXPECT_EQ(record.HasOnDemandTask(), kinds.find('o') != std::string::npos);
        EXPECT_EQ(record.HadSharedTask(), kinds.find('s') != std::string::npos);
    }
}

// The stores hold these for years. Each is the 128-bit XXH3 of the text behind it.
TEST(Records, HaveTheKeysThatStoresHold) {
    CDeviceIdentifier device = Device("router1");
    // 0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0config
    EXPECT_EQ(CDEDataConfigFile(device).GetMetaMD5(), "25f1e04d68c29c6355913e57ce991a00");

    CDEDataShowCommand command(device);
    command.SetCommand("show version");
    command.SetData(std::string("up\0time", 7));
    command.SetParam(Json(R"({"ignored":1})"));
    // 0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0cmdshow version
    EXPECT_EQ(command.GetMetaMD5(), "1a0d67045f981bfec8153cd760f531b9");
    EXPECT_EQ(command.GetDataMD5(), "39037af2199be66dd805b26abbd2eb59");  // up\0time

    CDEDataStructureData structure(device, DEDataTypeParser);
    structure.SetLocation("path/bgp");
    // 0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0parserpath/bgpnull
    EXPECT_EQ(structure.GetMetaMD5(), "dc084ed024a9079e9b860fb2e1b9ab9e");
    structure.SetParam(Json(R"({"vrf":"red","n":[1,-2]})"));
    // 0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0parserpath/bgp{"n":[1,-2],"vrf":"red"}
    EXPECT_EQ(structure.GetMetaMD5(), "e7815b292fdb1172fce1a298b5f2879b");

    // Only the key of a structure tells nodes apart.
    CDeviceIdentifier one = Node("N:abc:def");
    CDeviceIdentifier other = Node("N:abc:xyz");
    EXPECT_EQ(CDEDataShowCommand(one).GetMetaMD5(), CDEDataShowCommand(other).GetMetaMD5());
    EXPECT_NE(CDEDataStructureData(one, DEDataTypeRaw).GetMetaMD5(),
              CDEDataStructureData(other, DEDataTypeRaw).GetMetaMD5());
}

/// A kind with a data checksum of its own.
class GivenRecord : public CDEDataBase {
  public:
    using CDEDataBase::CDEDataBase;
    std::string GetDataMD5CA() override { return "own checksum"; }
};

TEST(Records, ComputeNoDataKeyForTablesAndConfigurationFiles) {
    for (int type = -1; type <= 8; ++type) {
        SCOPED_TRACE(type);
        CDEDataBase record(Device(""), static_cast<EnumDEDataType>(type));
        record.SetData("data");
        const bool isTable = type == 3 || type == 4;
        const std::string computed = record.GetDataMD5();
        EXPECT_EQ(computed.empty(), isTable);
        record.SetDataMD5CA("given");
        EXPECT_EQ(record.GetDataMD5CA(), "given");
        EXPECT_EQ(record.GetDataMD5(), isTable ? "given" : computed);
        EXPECT_EQ(DeviceData(record)["name"].isNull(), type == 3);
    }
    EXPECT_EQ(GivenRecord(Device(""), DEDataTypeSysTable).GetDataMD5(), "own checksum");
    CDEDataConfigFile file(Device(""));
    file.SetData("data");
    file.SetType(DEDataTypeSysTable);
    file.SetDataMD5CA("given");
    EXPECT_EQ(file.GetDataMD5(), "");
    file.SetDataMD5("checksum");
    EXPECT_EQ(file.GetODJson()["md5"].asString(), "checksum");
}

TEST(Records, TakeADataKeyWhileAViewIsBuilt) {
    CDEDataBase record(Device(""), DEDataTypeNctTable);
    const std::string values[] = {std::string(100, 'a'), std::string(5000, 'b')};
    record.SetDataMD5CA(values[0]);
    std::thread writer([&] {
        for (int i = 0; i < 500; ++i) record.SetDataMD5CA(values[i % 2]);
    });
    for (int i = 0; i < 500; ++i) {
        const std::string seen = record.GetODJson()["md5"].asString();
        ASSERT_TRUE(seen == values[0] || seen == values[1]) << seen;
    }
    writer.join();
}

TEST(Records, HaveTheViewsThatStoresReceive) {
    CDEDataBase blank;
    blank.SetProperties(Json("[]"));
    CDeviceIdentifier device = Device("router1");
    CDEDataStructureData full(device, DEDataTypeParser);
    full.SetLocation("path/bgp");
    full.SetTime(1700000000123);
    full.SetFlag(-7);
    full.SetErrorLog("late");
    full.SetData(std::string("a\0b", 3));
    full.SetParam(Json(R"({"vrf":"red"})"));
    full.SetProperties(Json(R"(["x"])"));
    for (const auto& row : RowsOf(TEST_DATA "/views.txt")) {
        CDEDataBase& record = row[0] == "blank" ? blank : full;
        if (row[0] == "table") record.SetType(DEDataTypeSysTable);
        const vxJson::Value view = row[1] == "GetDEStatus" ? Status(record)
                                   : row[1] == "GetODJson" ? record.GetODJson()
                                                           : DeviceData(record);
        EXPECT_EQ(view.toString(false), row.at(2)) << row[0] << " " << row[1];
    }
}

TEST(Records, CutTheErrorLogOfTheViewAndLeaveAnEmptyParameterOut) {
    CDEDataBase record;
    record.SetParam(Json("{}"));
    EXPECT_TRUE(Status(record)["param"].isObject() && record.GetODJson()["param"].isNull());
    for (const std::size_t size : {1024U, 1025U, 2000U}) {
        record.SetErrorLog(std::string(size - 1, 'x') + "y");
        EXPECT_EQ(record.GetErrorLog().size(), size);
        EXPECT_EQ(record.GetODJson()["errorLog"].asString(), record.GetErrorLog().substr(0, 1024));
    }
}

}  // namespace
