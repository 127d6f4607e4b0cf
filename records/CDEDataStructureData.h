#pragma once

#include "records/CDEDataBase.h"

/// A structured result. Its name is its location, and its meta key tells nodes and parameters
/// apart, which that of the other records doesn't.
///
/// Thread rule: that of CDEDataBase.
class DATAENGINE_EXPORT CDEDataStructureData : public CDEDataBase {
  public:
    /// A record of no device and of type "none".
    CDEDataStructureData();

    /// A record of the device `id` and of type `type`. `id` is left as it is.
    CDEDataStructureData(CDeviceIdentifier& id, EnumDEDataType type);

    ~CDEDataStructureData() override;

    /// The checksum of GetDevId, the type's text, the location and the compact JSON text of the
    /// parameters, one behind the other. Null parameters enter with their text too.
    std::string GetMetaMD5() override;

    /// The location.
    std::string GetName() const override;
    /// Replaces the location.
    void SetLocation(const std::string& location) { location_ = location; }

  private:
    std::string location_;
};
