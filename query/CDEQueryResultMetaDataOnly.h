#pragma once

#include <VxUtil/vxJson.h>

#include <string>

#include "contracts/IJsonSerialize.h"

/// Says which query an answer belongs to: day, device, type, name and parameter.
///
/// Setters copy; references that getters return lead into the object and live as long as it.
///
/// Thread rule: an object belongs to one thread at a time.
class DATAENGINE_EXPORT CDEQueryResultMetaDataOnly : public IJsonSerialize {
  public:
    /// Empty texts and a null parameter.
    CDEQueryResultMetaDataOnly();
    /// A move leaves the source's texts empty and its day and parameter as they were. An assignment
    /// from itself changes nothing. @{
    CDEQueryResultMetaDataOnly(const CDEQueryResultMetaDataOnly&) = default;
    CDEQueryResultMetaDataOnly& operator=(const CDEQueryResultMetaDataOnly&) = default;
    CDEQueryResultMetaDataOnly(CDEQueryResultMetaDataOnly&& other);
    CDEQueryResultMetaDataOnly& operator=(CDEQueryResultMetaDataOnly&& other);
    /// @}

    /// The day of the data, stored unchecked. Set or load it before it is read. @{
    int GetDay() const { return day_; }
    void SetDay(int day) { day_ = day; }
    /// @}

    /// The name of the unit; empty for none. @{
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

    /// Writes what the answer belongs to: as SaveToJson, but "name" only where it is not empty, so
    /// that a "name" already in `out` stays. Returns true.
    bool GetQueryInfo(vxJson::Value& out) const;

    /// Five lines for people, each closed by "\r\n": day, devId, type, name and param, the last as
    /// styled JSON text with its own line breaks.
    std::string toPrintString() const;

    /// Reads "day", "devId", "type", "name" and "param".
    bool LoadFromJson(const vxJson::Value& source) override;
    /// Writes the same five keys, an empty text and a null parameter too.
    bool SaveToJson(vxJson::Value& target) const override;

    /// True for the earlier day; otherwise ordered by device, type, name and parameter as if the
    /// days were equal. One-sided by design: of two objects with different days each may be less
    /// than the other, and only objects of one day are strictly ordered.
    bool operator<(const CDEQueryResultMetaDataOnly& other) const;

  private:
    int day_ = 0;
    std::string name_;
    vxJson::Value param_;
    std::string deviceId_;
    std::string type_;
};
