#include "records/CDEDataConfigFile.h"
#include "records/CDEDataShowCommand.h"
#include "records/CDEDataStructureData.h"
#include "tests/support/Texts.h"
#include "variables/DDKey.h"

// Objects for the debugger to print, all alive at the breakpoint.
struct Subject {
    vxJson::Value null;
    vxJson::Value yes = true;
    vxJson::Value negative = -5;
    vxJson::Value largest = 18446744073709551615ULL;
    vxJson::Value real = 2.0;
    vxJson::Value text = "quoted \"text\"\n";
    vxJson::Value time{1700000000123ULL, false};
    vxJson::Value longAgo{static_cast<unsigned long long>(-1), false};
    vxJson::Value bytes{"\x01\x02\xff of many more bytes", 21};
    vxJson::Value emptyArray = Json("[]");
    vxJson::Value emptyObject = Json("{}");
    vxJson::Value nested = Json(R"({"b":[1,[],{"x":null}],"a":"text","c":{"d":false}})");
    vxJson::Value manyKeys =
        Json(R"({"k1":1,"k2":2,"k3":3,"k4":4,"k5":5,"k6":6,"k7":7,"k8":8,"k9":9,"k10":10})");
    vxJson::Value deep = Json(std::string(1000000, '[') + std::string(1000000, ']'));

    DDKey key{"parsers/interfaces", "ifTable.\"speed\""};
    VX128Guid guid{"00112233-4455-6677-8899-aabbccddeeff"};
    VX128Guid nobody;

    CDEDataConfigFile config{CDeviceIdentifier(guid, "r1", CVXDomain("site"))};
    CDEDataShowCommand command;
    CDEDataStructureData result;
};

namespace {

CDeviceIdentifier Node() {
    CDeviceIdentifier id;
    id.SetHostName("N:pod:p-7");
    return id;
}

// The debugger stops here. The static type of `command` is its base class.
__attribute__((noinline)) void Stop(const Subject& subject, const CDEDataBase* command,
                                    const CDEDataBase& node) {
    asm volatile("" ::"r"(&subject), "r"(command), "r"(&node) : "memory");
}

}  // namespace

int main() {
    Subject subject;
    subject.config.SetDataMD5("0123");
    subject.config.SetTime(1700000000000);
    subject.config.SetData("interface Gi0/1\n");
    std::vector<CDETaskInfo> tasks{{"nightly", 2, false, ""}};
    subject.config.SetTaskInfo(tasks);
    subject.command.SetCommand("show version");
    subject.result.SetLocation("BGP/Neighbors");
    subject.result.SetParam(Json(R"({"vrf":"blue"})"));
    const CDEDataBase node(Node(), DEDataTypeRaw);
    Stop(subject, &subject.command, node);
}
