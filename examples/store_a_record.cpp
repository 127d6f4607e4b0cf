// Builds a record of a command's output and prints the data that a store receives: the keys of the
// record, its status record and the record itself.
#include <VxUtil/CDeviceIdentifier.h>
#include <VxUtil/VX128Guid.h>
#include <VxUtil/vxJson.h>

#include <iostream>

#include "records/CDEDataShowCommand.h"

// [quoted]
void Store(const CDeviceIdentifier& device, const std::string& command, const std::string& output,
           long long milliseconds) {
    CDEDataShowCommand record(device);
    record.SetCommand(command);
    record.SetData(output);
    record.SetTime(milliseconds);

    vxJson::Value status;
    record.GetDEStatus(status);
    std::cout << "meta key: " << record.GetMetaMD5() << '\n'  // device, type and name
              << "data key: " << record.GetDataMD5() << '\n'
              << "status: " << status.toString(false) << '\n'
              << "record: " << record.GetODJson().toString(false) << '\n';
}
// [end]

int main() {
    // A device has a GUID or, failing that, a host name of the form N:type:id.
    const CDeviceIdentifier device(VX128Guid(), "N:router:edge-r1");
    Store(device, "show version", "Version 17.9.4a, uptime is 41 weeks", 1740982361000);
}
