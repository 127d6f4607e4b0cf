#pragma once

#include <VxUtil/vxJson.h>

#include <string>

#include "contracts/IJsonSerialize.h"

/// Identifies the query that an answer belongs to: day, device, type, name and parameter.
///
/// Setters copy their arguments. Returned references remain valid for the lifetime of the object.
///
/// Thread safety: not safe for concurrent use.
class DATAENGINE_EXPORT CDEQueryResultMetaDataOnly : public IJsonSerialize {
  public:
    /// Constructs empty strings and a null parameter.
    CDEQueryResultMetaDataOnly();
    /// A moved-from object has empty strings and keeps its day and parameter. Self-assignment has
    /// no effect. @{
    CDEQueryResultMetaDataOnly(const CDEQueryResultMetaDataOnly&) = default;
    CDEQueryResultMetaDataOnly& operator=(const CDEQueryResultMetaDataOnly&) = default;
    CDEQueryResultMetaDataOnly(CDEQueryResultMetaDataOnly&& other);
    CDEQueryResultMetaDataOnly& operator=(CDEQueryResultMetaDataOnly&& other);
    /// @}

    /// The day of the data, not validated. Initially 0. @{
    int GetDay() const { return day_; }
    void SetDay(int day) { day_ = day; }
    /// @}

    /// The name of the unit, optional. @{
    const std::string& GetName() const { return name_; }
    void SetName(const std::string& name) { name_ = name; }
    /// @}

    /// The parameter of the query. @{
    const vxJson::Value& GetParam() const { return param_; }
    void SetParam(const vxJson::Value& param) { param_ = param; }
    /// @}

    /// The device of the data. @{
    const std::string& GetDeviceId() const { return deviceId_; }
    void SetDeviceId(const std::string& deviceId) { deviceId_ = deviceId; }
    /// @}

    /// The type of the data. @{
    const std::string& GetType() const { return type_; }
    void SetType(const std::string& type) { type_ = type; }
    /// @}

    /// Writes the same keys as SaveToJson, but "name" only if it is not empty; a "name" already in
    /// `out` then stays. Returns true.
    bool GetQueryInfo(vxJson::Value& out) const;

    /// Returns five lines for people, each ending in "\r\n": day, devId, type, name and param, the
    /// last as styled JSON text with its own line breaks.
    std::string toPrintString() const;

    /// Reads "day", "devId", "type", "name" and "param".
    bool LoadFromJson(const vxJson::Value& source) override;
    /// Writes the same five keys, including empty strings and a null parameter.
    bool SaveToJson(vxJson::Value& target) const override;

    /// Returns true if this day is earlier; otherwise compares device, type, name and parameter as
    /// if the days were equal. Not a strict weak order; do not use as a key: of two objects with
    /// different days, each may be less than the other.
    bool operator<(const CDEQueryResultMetaDataOnly& other) const;

  private:
    int day_ = 0;
    std::string name_;
    vxJson::Value param_;
    std::string deviceId_;
    std::string type_;
};
