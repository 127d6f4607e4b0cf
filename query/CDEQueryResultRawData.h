#pragma once

#include <string>

#include "contracts/IJsonSerialize.h"

/// One stored unit as an answer: its payload and the fields stored with it. The library interprets
/// none of the values.
///
/// Setters copy their arguments. Returned references remain valid for the lifetime of the object.
///
/// Thread safety: not safe for concurrent use.
class DATAENGINE_EXPORT CDEQueryResultRawData : public IJsonSerialize {
  public:
    /// Constructs empty strings, an empty payload and zeros.
    CDEQueryResultRawData() = default;

    /// A moved-from object has empty strings and keeps its numbers. Self-assignment has no effect.
    /// @{
    CDEQueryResultRawData(const CDEQueryResultRawData&) = default;
    CDEQueryResultRawData& operator=(const CDEQueryResultRawData&) = default;
    CDEQueryResultRawData(CDEQueryResultRawData&& other) noexcept;
    CDEQueryResultRawData& operator=(CDEQueryResultRawData&& other) noexcept;
    /// @}

    /// The time of the stored unit, in milliseconds since the Unix epoch. @{
    long long GetTime() const { return time_; }
    void SetTime(long long time) { time_ = time; }
    /// @}

    /// The payload, arbitrary bytes. @{
    std::string& GetData() { return data_; }
    const std::string& GetData() const { return data_; }
    void SetData(const std::string& data) { data_ = data; }
    /// @}

    /// The record's flag word. @{
    int GetFlag() const { return flag_; }
    void SetFlag(int flag) { flag_ = flag; }
    /// @}

    /// The checksum of the payload, as the store keeps it. @{
    const std::string& GetMD5() const { return md5_; }
    void SetMD5(const std::string& md5) { md5_ = md5; }
    /// @}

    /// The task that collected the unit. @{
    const std::string& GetTaskId() const { return taskId_; }
    void SetTaskId(const std::string& taskId) { taskId_ = taskId; }
    /// @}

    /// The index within the task. Initially 0. @{
    int GetTaskIndex() const { return taskIndex_; }
    void SetTaskIndex(int taskIndex) { taskIndex_ = taskIndex; }
    /// @}

    /// A further identifier of the task. @{
    const std::string& GetExtraId() const { return extraId_; }
    void SetExtraId(const std::string& extraId) { extraId_ = extraId; }
    /// @}

    /// The source of the data. Initially 0. @{
    int GetDataSource() const { return dataSource_; }
    void SetDataSource(int dataSource) { dataSource_ = dataSource; }
    /// @}

    /// The error text of the collection. @{
    const std::string& GetErrorLog() const { return errorLog_; }
    void SetErrorLog(const std::string& errorLog) { errorLog_ = errorLog; }
    /// @}

    /// Reads "time", "data", "flag", "md5", "taskId", "taskIndex", "extraId", "dataSource" and
    /// "errorLog".
    bool LoadFromJson(const vxJson::Value& source) override;
    /// Writes the same nine keys, "time" as a time value and "data" as a binary value.
    bool SaveToJson(vxJson::Value& target) const override;

  private:
    long long time_ = 0;
    std::string data_;
    int flag_ = 0;
    std::string md5_;
    std::string taskId_;
    int taskIndex_ = 0;
    std::string extraId_;
    int dataSource_ = 0;
    std::string errorLog_;
};
