#pragma once

#include <VxUtil/vxJson.h>

#include <string>
#include <vector>

#include "contracts/IJsonSerialize.h"

/// A query for structured data at a location, with free-form parameters, a selection of the fields
/// to return and a filter on device types.
///
/// A load adds to the device types and replaces everything else. A move copies, so the source keeps
/// its fields. Setters copy their arguments. Returned references remain valid for the lifetime of
/// the object.
///
/// Thread safety: not safe for concurrent use; GetRtnFields gives write access to a const object.
class DATAENGINE_EXPORT CDEStructureQueryInfo : public IJsonSerialize {
  public:
    /// Constructs an empty location, null values and a filter that matches nothing.
    CDEStructureQueryInfo();
    /// Copies every field. @{
    CDEStructureQueryInfo(const CDEStructureQueryInfo&) = default;
    CDEStructureQueryInfo& operator=(const CDEStructureQueryInfo&) = default;
    /// @}

    /// The location of the requested data: "name" in JSON. @{
    const std::string& GetLocation() const { return location_; }
    void SetLocation(const std::string& location) { location_ = location; }
    /// @}

    /// The free-form parameters. @{
    const vxJson::Value& GetParams() const { return params_; }
    void SetParams(const vxJson::Value& params) { params_ = params; }
    /// @}

    /// The fields to return, writable through a const object as well. @{
    vxJson::Value& GetRtnFields() const { return rtnFields_; }
    void SetRtnFields(const vxJson::Value& rtnFields) { rtnFields_ = rtnFields; }
    /// @}

    /// The device types of the filter; 0 matches every type. @{
    const std::vector<int>& GetDevTypes() const { return devTypes_; }
    void SetDevTypes(const std::vector<int>& devTypes) { devTypes_ = devTypes; }
    /// @}

    /// Returns whether the filter contains `devType` or 0, which matches every type. An empty
    /// filter matches nothing.
    bool IsDevTypeMatch(int devType) const;

    /// Reads "name", "param" and "rtnFields", and, if "devTypes" is an array, appends its elements,
    /// each cut to its low 32 bits.
    bool LoadFromJson(const vxJson::Value& source) override;
    /// Writes "name", "param" and "rtnFields", and appends the device types to "devTypes", which an
    /// empty filter leaves null.
    bool SaveToJson(vxJson::Value& target) const override;

  private:
    std::string location_;
    vxJson::Value params_;
    mutable vxJson::Value rtnFields_;
    std::vector<int> devTypes_;
};
