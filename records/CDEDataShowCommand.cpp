#include "records/CDEDataShowCommand.h"

CDEDataShowCommand::CDEDataShowCommand() {
    SetType(DEDataTypeCmd);
}

CDEDataShowCommand::CDEDataShowCommand(const CDeviceIdentifier& id)
    : CDEDataBase(id, DEDataTypeCmd) {}

CDEDataShowCommand::~CDEDataShowCommand() = default;

std::string CDEDataShowCommand::GetName() const {
    return command_;
}
