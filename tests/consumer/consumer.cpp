// Uses the installed libraries as a platform's program does, and prints each failed check.
#include <VxUtil/vxJson.h>

#include <functional>
#include <iostream>
#include <msgpack.hpp>

#include "contracts/DataEngineVersion.h"
#include "descriptors/CDEDeviceDataLocation.h"
#include "query/CDEQueryResultStructureData.h"
#include "records/CDEDataBase.h"
#include "schema/DataEngineNames.h"
#include "schema/StoreNames.h"
#include "structure/CDEStructureDataHelper.h"

namespace {

// Built before main, from constants and calls of the library, which a static library contributes to
// the program.
const std::string kQualifiedKey = "record." + DataEngineNames::MetaRecord::devId;
const std::string kTypeText = CDEDataBase::TypeInt2Str(DEDataTypeCmd);
const vxJson::Value kNull;
const std::string kAbsentText = kNull["absent"].asString();

class ProbeRecord : public CDEDataBase {
  public:
    ProbeRecord() : CDEDataBase(CDeviceIdentifier(), DEDataTypeRaw) {}
    std::string GetName() const override { return "probe"; }
};

int failures = 0;

void Check(bool holds, const char* what) {
    if (holds) return;
    std::cerr << "consumer: " << what << '\n';
    ++failures;
}

template <class Exception>
void CheckThrows(const std::function<void()>& call, const char* what) {
    try {
        call();
        Check(false, what);
    } catch (const Exception&) {
    } catch (...) {
        Check(false, what);
    }
}

void ReadHeader(const std::string& blob) {
    std::string name;
    vxJson::Value schema;
    int offset = 0;
    CDEStructureDataHelper::GetBinaryDataInfo(blob, name, schema, offset);
}

}  // namespace

int main() {
    Check(kQualifiedKey == "record.devId", "a constant was not there for a static initialiser");
    Check(kTypeText == "cmd" && kAbsentText.empty(), "a call in a static initialiser went wrong");
    Check(StoreNames::Operator::gt == "$gt", "a constant of the store names is wrong");

    Check(dataengine::Version() == std::to_string(DATAENGINE_VERSION_MAJOR) + '.' +
                                       std::to_string(DATAENGINE_VERSION_MINOR) + '.' +
                                       std::to_string(DATAENGINE_VERSION_PATCH),
          "the library is of another version than its headers");

    ProbeRecord record;
    record.SetTime(86400000);
    Check(record.GetODJson()["name"].asString() == "probe", "a view missed an override");
    Check(record.GetDay() == 2, "the day of a record is wrong");
    const CDEDataBase& base = record;
    Check(dynamic_cast<const ProbeRecord*>(&base) != nullptr, "a record's type was not recognised");

    CheckThrows<msgpack::insufficient_bytes>([] { ReadHeader(""); }, "insufficient_bytes");
    CheckThrows<msgpack::type_error>([] { ReadHeader("\xa1x\xa1y\x90"); }, "type_error");
    CheckThrows<vxJson::Error>([] { vxJson::Value("text").asInt(); }, "Error of libVxUtil");
    CheckThrows<vxJson::Error>(
        [] {
            vxJson::Value source;
            source["offset"] = "text";
            CDEDeviceDataLocation("", "", 0, 0).LoadFromJson(source);
        },
        "Error through libdataengine");

    // A document that this program builds, the library copies, and both free.
    CDEQueryResultStructureData result;
    rapidjson::Document& document = result.GetData();
    auto& allocator = document.GetAllocator();
    document.SetObject();
    document.AddMember("name", rapidjson::Value(std::string(100, 'x').c_str(), allocator),
                       allocator);
    vxJson::Value json;
    result.SaveToJson(json);
    CDEQueryResultStructureData loaded;
    loaded.LoadFromJson(json);
    Check(loaded.GetData_RO() == document, "a document changed on its way");

    if (failures == 0) std::cout << "consumer: all is well\n";
    return failures == 0 ? 0 : 1;
}
