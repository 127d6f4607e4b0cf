#pragma once

#include "records/CDEDataBase.h"

/// The output of a command. Its name is the command line.
///
/// Thread safety: as CDEDataBase.
class DATAENGINE_EXPORT CDEDataShowCommand : public CDEDataBase {
  public:
    /// Constructs a record of type "cmd" without a device.
    CDEDataShowCommand();

    /// Constructs a record of type "cmd" of the device `id`.
    CDEDataShowCommand(const CDeviceIdentifier& id);

    ~CDEDataShowCommand() override;

    /// Returns the command line.
    std::string GetName() const override;
    /// Replaces the command line.
    void SetCommand(const std::string& command) { command_ = command; }

  private:
    std::string command_;
};
