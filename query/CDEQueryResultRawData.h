#pragma once

#include <string>

#include "contracts/IJsonSerialize.h"

/// One stored unit as an answer: its payload, any bytes, and what came with it. The library tests
/// none of the values.
///
/// A move leaves the source's texts and payload empty and its numbers as they were.
///
/// Thread rule: an object belongs to one thread at a time.
class DATAENGINE_EXPORT CDEQueryResultRawData : public IJsonSerialize {
  public:
    CDEQueryResultRawData() = default;
    CDEQueryResultRawData(const CDEQueryResultRawData&) = default;
    CDEQueryResultRawData& operator=(const CDEQueryResultRawData&) = default;
    // Written out for the source's empty texts.
    CDEQueryResultRawData(CDEQueryResultRawData&& other) noexcept;
    CDEQueryResultRawData& operator=(CDEQueryResultRawData&& other) noexcept;

    long long GetTime() const { return time_; }
    void SetTime(long long time) { time_ = time; }

    std::string& GetData() { return data_; }
    const std::string& GetData() const { return data_; }
    void SetData(const std::string& data) { data_ = data; }

    int GetFlag() const { return flag_; }
    void SetFlag(int flag) { flag_ = flag; }

    const std::string& GetMD5() const { return md5_; }
    void SetMD5(const std::string& md5) { md5_ = md5; }

    const std::string& GetTaskId() const { return taskId_; }
    void SetTaskId(const std::string& taskId) { taskId_ = taskId; }

    int GetTaskIndex() const { return taskIndex_; }
    void SetTaskIndex(int taskIndex) { taskIndex_ = taskIndex; }

    const std::string& GetExtraId() const { return extraId_; }
    void SetExtraId(const std::string& extraId) { extraId_ = extraId; }

    int GetDataSource() const { return dataSource_; }
    void SetDataSource(int dataSource) { dataSource_ = dataSource; }

    const std::string& GetErrorLog() const { return errorLog_; }
    void SetErrorLog(const std::string& errorLog) { errorLog_ = errorLog; }

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
