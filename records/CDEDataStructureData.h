#pragma once

#include "records/CDEDataBase.h"

/// A structured result. Its name is its location. Unlike the meta keys of the other records, its
/// meta key distinguishes nodes and parameters.
///
/// Thread safety: as CDEDataBase.
class DATAENGINE_EXPORT CDEDataStructureData : public CDEDataBase {
  public:
    /// Constructs a record of type "none" without a device.
    CDEDataStructureData();

    /// Constructs a record of the device `id` and of type `type`. Leaves `id` unchanged.
    CDEDataStructureData(CDeviceIdentifier& id, EnumDEDataType type);

    ~CDEDataStructureData() override;

    /// Returns the checksum of the concatenated GetDevId, type text, location and compact JSON text
    /// of the parameters. The text of null parameters is included.
    ///
    /// Parameters that print the same text share a key: NaN, the infinities and null; a time and
    /// the object with the key "$date" that it prints; a binary and the object with "$binary".
    std::string GetMetaMD5() override;

    /// Returns the location.
    std::string GetName() const override;
    /// Replaces the location.
    void SetLocation(const std::string& location) { location_ = location; }

  private:
    std::string location_;
};
