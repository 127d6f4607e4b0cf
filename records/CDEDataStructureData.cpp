#include "records/CDEDataStructureData.h"

#include "records/detail/RecordChecksum.h"

CDEDataStructureData::CDEDataStructureData() = default;

CDEDataStructureData::CDEDataStructureData(CDeviceIdentifier& id, EnumDEDataType type)
    : CDEDataBase(id, type) {}

CDEDataStructureData::~CDEDataStructureData() = default;

std::string CDEDataStructureData::GetMetaMD5() {
    const std::string param = GetParam().toString(false);
    const std::string name = GetName();
    return dataengine::detail::RecordChecksum(GetDevId() + TypeInt2Str(GetType()) + name + param);
}

std::string CDEDataStructureData::GetName() const {
    return location_;
}
