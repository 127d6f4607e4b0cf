#pragma once

#include "records/CDEDataBase.h"

/// A configuration file. Its data checksum is what the caller sets, never computed, and it has no
/// name, so that its meta key depends on the device and the type alone.
///
/// Thread rule: that of CDEDataBase; the data checksum is unguarded.
class DATAENGINE_EXPORT CDEDataConfigFile : public CDEDataBase {
  public:
    /// A record of no device and of type "config".
    CDEDataConfigFile();

    /// A record of type "config" of the device `id`.
    CDEDataConfigFile(const CDeviceIdentifier& id);

    ~CDEDataConfigFile() override;

    /// The checksum given to SetDataMD5, whatever the type and the data are; empty until then.
    std::string GetDataMD5() override;
    /// Sets the checksum that GetDataMD5 gives.
    void SetDataMD5(const std::string& checksum) { dataMD5_ = checksum; }

    /// The same as CDEDataBase::SetData.
    void SetData(const std::string& data) { CDEDataBase::SetData(data); }

  private:
    std::string dataMD5_;
};
