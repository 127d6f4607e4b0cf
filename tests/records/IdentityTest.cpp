#include <gtest/gtest.h>

#include <memory>

#include "Devices.h"
#include "records/CDEDataBase.h"
#include "records/CDEDataConfigFile.h"
#include "records/CDEDataShowCommand.h"
#include "records/CDEDataStructureData.h"
#include "schema/DataEngineNames.h"

namespace {

std::string HostNameOf(CDEDataBase& record) {
    const std::unique_ptr<vxJson::Value> view(record.GetDeviceDataJSon());
    return (*view)["devName"].asString();
}

TEST(Identity, IsSettledFromTheHostName) {
    const struct {
        CDeviceIdentifier device;
        std::string devId, hostName;
    } rows[] = {
        {Node(""), kNoGuidText, ""},
        {Node("N"), kNoGuidText, "N"},
        {Node("N:"), kNoGuidText, "N:"},
        {Node("N:abc"), kNoGuidText, "N:abc"},
        {Node("n:abc:def"), kNoGuidText, "n:abc:def"},
        {Node("xN:abc:def"), kNoGuidText, "xN:abc:def"},
        {Node("router1"), kNoGuidText, "router1"},
        {Node("N:abc:def"), "def", ""},
        {Node("N:abc:def:ghi"), "def:ghi", ""},
        {Node("N:abc:"), "", ""},
        {Node("N::def"), kNoGuidText, ""},  // no type, so the id is not reached
        {Device("N:abc:def"), kGuidText, "N:abc:def"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.device.GetHostName());
        CDeviceIdentifier device = row.device;
        CDEDataConfigFile file(device);
        CDEDataShowCommand command(device);
        CDEDataStructureData structure(device, DEDataTypeParser);
        for (CDEDataBase* record :
             {static_cast<CDEDataBase*>(&file), static_cast<CDEDataBase*>(&command),
              static_cast<CDEDataBase*>(&structure)}) {
            EXPECT_EQ(record->GetDevId(), row.devId);
            EXPECT_EQ(HostNameOf(*record), row.hostName);
        }
        EXPECT_EQ(device.GetHostName(), row.device.GetHostName());
    }
}

TEST(Identity, OfTheNodeOutlivesANewDevice) {
    CDEDataBase record(Node("N:abc:def"), DEDataTypeRaw);
    record.SetDevId(Node("N:other:node"));
    EXPECT_EQ(record.GetDevId(), "def");
    EXPECT_EQ(HostNameOf(record), "N:other:node");
    record.SetDevId(Device("router1"));
    EXPECT_EQ(record.GetDevId(), kGuidText);
    EXPECT_EQ(record.GetDomainDBName(), "Tenant_1");
    record.SetDomain(CVXDomain("Tenant_2"));
    EXPECT_EQ(record.GetDomainDBName(), "Tenant_2");
}

TEST(Type, HasATextBothWays) {
    const char* const texts[] = {"none",     "config", "cmd",       "sysTable",
                                 "nctTable", "parser", "pingtrace", "raw"};
    int number = 0;
    for (const std::string text : texts) {
        EXPECT_EQ(CDEDataBase::TypeStr2Int(text), number) << text;
        EXPECT_EQ(CDEDataBase::TypeInt2Str(static_cast<EnumDEDataType>(number++)), text);
    }
    for (const int other : {-1, 8, 2147483647, -2147483647 - 1}) {
        EXPECT_EQ(CDEDataBase::TypeInt2Str(static_cast<EnumDEDataType>(other)), "none") << other;
    }
    for (const std::string other : {"", "Config", "con", "config "}) {
        EXPECT_EQ(CDEDataBase::TypeStr2Int(other), 0) << other;
    }
    EXPECT_EQ(CDEDataBase::TypeStr2Int(std::string("cmd\0", 4)), 0);

    EXPECT_EQ(CDEDataBase().GetType(), 0);
    EXPECT_EQ(CDEDataConfigFile().GetType(), 1);
    EXPECT_EQ(CDEDataShowCommand().GetType(), 2);
    EXPECT_EQ(CDEDataStructureData().GetType(), 0);
}

TEST(Fields, StartWithTheirDefaultsAndKeepTheirOwnValue) {
    CDEDataBase record;
    EXPECT_EQ(record.GetDataSource(), -1);
    EXPECT_TRUE(record.GetIsUpdateDataStatus());
    EXPECT_TRUE(record.GetJsonForGBAlert().isNull());
    EXPECT_FALSE(record.IsNeedTrigger());
    record.SetTriggerKey("key");
    EXPECT_TRUE(record.IsNeedTrigger());

    record.SetData("data");
    record.SetData(record.GetData());
    EXPECT_EQ(record.GetData(), "data");
    vxJson::Value alert("alert");
    record.SetJsonForGBAlert(alert);
    EXPECT_EQ(alert.asString(), "alert");
    EXPECT_EQ(record.GetJsonForGBAlert().asString(), "alert");

    record.SetTime(1709251199999);  // the last millisecond of 29 February 2024
    EXPECT_EQ(record.GetDay(), 29);
    record.SetTime(record.GetTime() + 1);
    EXPECT_EQ(record.GetDay(), 1);
}

TEST(Tasks, AreCopiedAndAskedForTheirKind) {
    const CDETaskInfo shared{"task", 3, false, "extra"};
    const CDETaskInfo onDemand{"other", 4, true, ""};
    std::vector<CDETaskInfo> rows[] = {{shared, onDemand, onDemand}, {}, {onDemand}, {shared}};
    CDEDataBase record;
    for (std::vector<CDETaskInfo>& tasks : rows) {
        bool hasOnDemand = false;
        bool hasShared = false;
        for (const CDETaskInfo& task : tasks) (task.isOnDemand ? hasOnDemand : hasShared) = true;
        const std::size_t count = tasks.size();
        SCOPED_TRACE(count);
        record.SetTaskInfo(tasks);
        EXPECT_EQ(tasks.size(), count);
        EXPECT_EQ(record.GetTaskInfo().size(), count);
        EXPECT_EQ(record.HasOnDemandTask(), hasOnDemand);
        EXPECT_EQ(record.HadSharedTask(), hasShared);
    }
    const CDETaskInfo& task = record.GetTaskInfo().front();
    EXPECT_EQ(task.taskId + task.extraId, "taskextra");
    EXPECT_EQ(task.taskIndex, 3);
}

}  // namespace
