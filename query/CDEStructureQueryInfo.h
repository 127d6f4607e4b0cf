#pragma once

#include <VxUtil/vxJson.h>

#include <string>
#include <vector>

#include "contracts/IJsonSerialize.h"

/// Asks for structured data at a location, with free-form parameters, a selection of the fields to
/// return and a filter on device types.
///
/// Loads add to the device types and replace everything else. A move is a copy.
/// Setters copy; references that getters return lead into the object and live as long as it.
///
/// Thread rule: an object belongs to one thread at a time, and so does the value that GetRtnFields
/// hands out of a const one.
class DATAENGINE_EXPORT CDEStructureQueryInfo : public IJsonSerialize {
  public:
    /// No location, null values, and a filter that matches nothing.
    CDEStructureQueryInfo();
    /// Copies every field. @{
    CDEStructureQueryInfo(const CDEStructureQueryInfo&) = default;
    CDEStructureQueryInfo& operator=(const CDEStructureQueryInfo&) = default;
    /// @}

    /// The location of the structured data asked for: "name" in JSON. @{
    const std::string& GetLocation() const { return location_; }
    void SetLocation(const std::string& location) { location_ = location; }
    /// @}

    /// The free-form parameters. @{
    const vxJson::Value& GetParams() const { return params_; }
    void SetParams(const vxJson::Value& params) { params_ = params; }
    /// @}

    /// The fields to return, writable through a const object too. @{
    vxJson::Value& GetRtnFields() const { return rtnFields_; }
    void SetRtnFields(const vxJson::Value& rtnFields) { rtnFields_ = rtnFields; }
    /// @}

    /// The filter's device types; a 0 stands for every type. @{
    const std::vector<int>& GetDevTypes() const { return devTypes_; }
    void SetDevTypes(const std::vector<int>& devTypes) { devTypes_ = devTypes; }
    /// @}

    /// True if the filter holds `devType`, or a 0, which stands for every type. An empty filter
    /// matches nothing.
    bool IsDevTypeMatch(int devType) const;

    /// Reads "name", "param" and "rtnFields", and appends the elements of "devTypes", each cut to
    /// its low 32 bits, if that is an array.
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
