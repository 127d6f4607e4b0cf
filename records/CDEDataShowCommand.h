#pragma once

#include "records/CDEDataBase.h"

/// The output of a command. Its name is the command line.
///
/// Thread rule: that of CDEDataBase.
class DATAENGINE_EXPORT CDEDataShowCommand : public CDEDataBase {
  public:
    /// A record of no device and of type "cmd".
    CDEDataShowCommand();

    /// A record of type "cmd" of the device `id`.
    CDEDataShowCommand(const CDeviceIdentifier& id);

    ~CDEDataShowCommand() override;

    /// The command line.
    std::string GetName() const override;
    /// Replaces the command line.
    void SetCommand(const std::string& command) { command_ = command; }

  private:
    std::string command_;
};
