#pragma once

#include <string>

#include "contracts/IJsonSerialize.h"

/// One stored unit as an answer: its payload, any bytes, and what came with it. The library tests
/// none of the values.
///
/// Setters copy; references that getters return lead into the object and live as long as it.
///
/// Thread rule: an object belongs to one thread at a time.
class DATAENGINE_EXPORT CDEQueryResultRawData : public IJsonSerialize {
  public:
    /// Empty texts and payload, time and flag 0.
    CDEQueryResultRawData() = default;

    /// A move leaves the source's texts and payload empty and its numbers as they were. An
    /// assignment from itself changes nothing. @{
    CDEQueryResultRawData(const CDEQueryResultRawData&) = default;
    CDEQueryResultRawData& operator=(const CDEQueryResultRawData&) = default;
    CDEQueryResultRawData(CDEQueryResultRawData&& other) noexcept;
    CDEQueryResultRawData& operator=(CDEQueryResultRawData&& other) noexcept;
    /// @}

    /// The time of the stored unit, in milliseconds since the Unix epoch. @{
    long long GetTime() const { return time_; }
    void SetTime(long long time) { time_ = time; }
    /// @}

    /// The payload, any bytes. @{
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

    /// The index within the task. Set or load it before it is read. @{
    int GetTaskIndex() const { return taskIndex_; }
    void SetTaskIndex(int taskIndex) { taskIndex_ = taskIndex; }
    /// @}

    /// A further identifier of the task. @{
    const std::string& GetExtraId() const { return extraId_; }
    void SetExtraId(const std::string& extraId) { extraId_ = extraId; }
    /// @}

    /// Where the data came from. Set or load it before it is read. @{
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
    /// Writes the same nine keys, "time" as a time value and "data" as a binary one.
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
