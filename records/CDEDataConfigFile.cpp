#include "records/CDEDataConfigFile.h"

CDEDataConfigFile::CDEDataConfigFile() {
    SetType(DEDataTypeConfig);
}

CDEDataConfigFile::CDEDataConfigFile(const CDeviceIdentifier& id)
    : CDEDataBase(id, DEDataTypeConfig) {}

CDEDataConfigFile::~CDEDataConfigFile() = default;

std::string CDEDataConfigFile::GetDataMD5() {
    return dataMD5_;
}
