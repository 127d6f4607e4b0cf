#include <VxUtil/CDeviceIdentifier.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <thread>
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

TEST(Records, TakeTheNodeFromTheHostName) {
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
    record.SetDevId(Device("router1"));
    EXPECT_EQ(record.GetDevId(), kGuid);
    record.SetDomain(CVXDomain("Tenant_2"));
    EXPECT_EQ(record.GetDomainDBName(), "Tenant_2");
}

TEST(Records, HaveATypeWithATextBothWays) {
    const EnumDEDataType types[] = {DEDataTypeNone,      DEDataTypeConfig,   DEDataTypeCmd,
                                    DEDataTypeSysTable,  DEDataTypeNctTable, DEDataTypeParser,
                                    DEDataTypePingTrace, DEDataTypeRaw};
    const char* const texts[] = {"none",     "config", "cmd",       "sysTable",
                                 "nctTable", "parser", "pingtrace", "raw"};
    for (int number = 0; number < 8; ++number) {
        EXPECT_EQ(types[number], number);
        EXPECT_EQ(CDEDataBase::TypeStr2Int(texts[number]), number) << texts[number];
        EXPECT_EQ(CDEDataBase::TypeInt2Str(types[number]), texts[number]);
    }
    for (const int other : {-1, 8, 2147483647, -2147483647 - 1}) {
        EXPECT_EQ(CDEDataBase::TypeInt2Str(static_cast<EnumDEDataType>(other)), "none") << other;
    }
    EXPECT_EQ(CDEDataBase::TypeStr2Int("Config"), DEDataTypeNone);
    EXPECT_EQ(CDEDataBase::TypeStr2Int(std::string("cmd\0", 4)), DEDataTypeNone);
    EXPECT_EQ(CDEDataConfigFile().GetType(), DEDataTypeConfig);
    EXPECT_EQ(CDEDataShowCommand().GetType(), DEDataTypeCmd);
    EXPECT_EQ(CDEDataStructureData().GetType(), DEDataTypeNone);
}

TEST(Records, TakeTheDayOfTheMonthInUtc) {
    CDEDataBase record;
    const struct {
        long long midnight;
        int dayBefore;
    } rows[] = {{0, 31}, {1709251200000, 29}, {1759276800000, 30}, {4107542400000, 28}};
    for (const auto& [midnight, dayBefore] : rows) {
        record.SetTime(midnight);
        EXPECT_EQ(record.GetDay(), 1) << midnight;
        record.SetTime(midnight - 1);
        EXPECT_EQ(record.GetDay(), dayBefore) << midnight;
    }
}

TEST(Records, KnowTheKindsOfTheirTasks) {
    CDEDataBase record;
    for (const std::string kinds : {"so", "", "oo", "s"}) {
        std::vector<CDETaskInfo> tasks;
        for (const char kind : kinds) tasks.push_back({"task", 3, kind == 'o', "extra"});
        record.SetTaskInfo(tasks);
        EXPECT_EQ(record.GetTaskInfo().size(), tasks.size()) << kinds;
        EXPECT_EQ(record.HasOnDemandTask(), kinds.find('o') != std::string::npos) << kinds;
        EXPECT_EQ(record.HadSharedTask(), kinds.find('s') != std::string::npos) << kinds;
    }
}

TEST(Records, HaveTheKeysThatStoresHold) {
    for (const auto& row : RowsOf(TEST_DATA "/keys.txt")) {
        SCOPED_TRACE(row[4]);
        CDeviceIdentifier device = row[1] == "-" ? Device("router1") : Node(row[1]);
        CDEDataConfigFile file(device);
        CDEDataShowCommand command(device);
        command.SetCommand(row[2]);
        CDEDataStructureData structure(device, DEDataTypeParser);
        structure.SetLocation(row[2]);
        const auto key = [&](auto& record) {
            record.SetParam(Json(row[3]));
            return record.GetMetaMD5();
        };
        EXPECT_EQ(row[0] == "file"      ? key(file)
                  : row[0] == "command" ? key(command)
                                        : key(structure),
                  row.at(5));
    }
    CDEDataShowCommand command;
    command.SetData(std::string("up\0time", 7));
    EXPECT_EQ(command.GetDataMD5(), "39037af2199be66dd805b26abbd2eb59");
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
    int mixed = 0;
    for (int i = 0; i < 500; ++i) {
        const std::string seen = record.GetODJson()["md5"].asString();
        if (seen != values[0] && seen != values[1]) ++mixed;
    }
    writer.join();
    EXPECT_EQ(mixed, 0);
}

TEST(Records, HaveTheViewsThatStoresReceive) {
    CDEDataBase blank;
    EXPECT_EQ(blank.GetDataSource(), -1);
    EXPECT_TRUE(blank.GetIsUpdateDataStatus());
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
    EXPECT_TRUE(Status(record)["param"].isObject());
    EXPECT_EQ(record.GetODJson()["param"], vxJson::Value());
    for (const std::size_t size : {1024U, 1025U, 2000U}) {
        record.SetErrorLog(std::string(size - 1, 'x') + "y");
        EXPECT_EQ(record.GetErrorLog().size(), size);
        EXPECT_EQ(record.GetODJson()["errorLog"].asString(), record.GetErrorLog().substr(0, 1024));
    }
}

}  // namespace
