// Builds the filter and the update by which a client stores a record if its data has changed, and
// prints both as text and as the BSON that goes to the store.
#include <VxUtil/CDeviceIdentifier.h>
#include <VxUtil/VX128Guid.h>
#include <VxUtil/vxJson.h>

#include <cstdio>
#include <string>

#include "bson/Bson.h"
#include "records/CDEDataShowCommand.h"
#include "schema/DataEngineNames.h"
#include "schema/StoreNames.h"

namespace {

// [quoted]
namespace MetaRecord = DataEngineNames::MetaRecord;
namespace Operator = StoreNames::Operator;

/// Returns a filter for the stored record with the same meta key but other data.
vxJson::Value MakeFilter(CDEDataShowCommand& record) {
    vxJson::Value filter;
    filter[MetaRecord::_id] = record.GetMetaMD5();
    filter[MetaRecord::md5][Operator::ne] = record.GetDataMD5();
    return filter;
}
// [end]

vxJson::Value MakeUpdate(CDEDataShowCommand& record) {
    vxJson::Value update;
    update[Operator::set] = record.GetODJson();
    update[Operator::currentDate][MetaRecord::lastProbeTime] = true;
    return update;
}

void Print(const char* name, const vxJson::Value& document) {
    const std::string bytes = dataengine::bson::Encode(document);
    std::printf("%s\n%s\n\n%zu bytes of BSON", name, document.toStyledString().c_str(),
                bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i)
        std::printf("%s%02x", i % 32 == 0 ? "\n" : " ", static_cast<unsigned char>(bytes[i]));
    std::printf("\n\n");
}

}  // namespace

int main() {
    // The meta key depends on the GUID: all devices without one share the meta key of a command.
    const CDeviceIdentifier device(VX128Guid("6f1c2d3e-4b5a-4978-8695-a4b3c2d1e0f9"), "");
    CDEDataShowCommand record(device);
    record.SetCommand("show clock");
    record.SetData("06:12:41.000 UTC Mon Mar 3 2025\n");
    record.SetTime(1740982361000);

    Print("filter", MakeFilter(record));
    Print("update", MakeUpdate(record));
    return 0;
}
