#pragma once

#include "records/CDEDataBase.h"

/// A configuration file. The caller sets its data checksum; it is never computed. It has no name,
/// so its meta key depends only on the device and the type.
///
/// Thread safety: as CDEDataBase; the data checksum is not guarded by the lock.
class DATAENGINE_EXPORT CDEDataConfigFile : public CDEDataBase {
  public:
    /// Constructs a record of type "config" without a device.
    CDEDataConfigFile();

    /// Constructs a record of type "config" of the device `id`.
    CDEDataConfigFile(const CDeviceIdentifier& id);

    ~CDEDataConfigFile() override;

    /// Returns the checksum set by SetDataMD5, whatever the type and the data; empty until then.
    std::string GetDataMD5() override;
    /// Sets the checksum that GetDataMD5 returns.
    void SetDataMD5(const std::string& checksum) { dataMD5_ = checksum; }

    /// The same as CDEDataBase::SetData.
    void SetData(const std::string& data) { CDEDataBase::SetData(data); }

  private:
    std::string dataMD5_;
};
