#pragma once

#include <rapidjson/document.h>

#include <string>

#include "contracts/IJsonSerialize.h"
#include "contracts/RapidJsonLayout.h"
#include "query/CDEQueryResultMetaDataOnly.h"

/// The answer to a query for structured data: a parsed document, its time, a flag word, an error
/// text and the query that it answers.
///
/// The document has the type that CDEStructureDataHelper fills; its JSON form is compact text. It
/// owns its memory pool, which only grows: values replaced by a load or by the caller are freed
/// with the object.
///
/// Move-only. A move takes the document with its pool, leaves the source's strings empty and its
/// numbers as they were; a moved-from object's document has no pool, and the object may only be
/// destroyed or assigned to. An object must not be move-assigned to itself.
///
/// Thread safety: neither the object nor its document is safe for concurrent use.
class DATAENGINE_EXPORT CDEQueryResultStructureData : public IJsonSerialize {
  public:
    CDEQueryResultStructureData() = default;
    /// Not copyable, since the document is not. @{
    CDEQueryResultStructureData(const CDEQueryResultStructureData&) = delete;
    CDEQueryResultStructureData& operator=(const CDEQueryResultStructureData&) = delete;
    /// @}
    /// Takes the document with its pool, and the error text. Throws std::bad_alloc if memory runs
    /// out; `other` is then unchanged. @{
    CDEQueryResultStructureData(CDEQueryResultStructureData&& other);
    CDEQueryResultStructureData& operator=(CDEQueryResultStructureData&& other);
    /// @}

    /// The document, for the decoder and for work with rapidjson; its allocator is its own. The
    /// references are into the object. @{
    rapidjson::Document& GetData() { return data_; }
    const rapidjson::Document& GetData_RO() const { return data_; }
    /// @}

    /// The time of the data, in milliseconds since the Unix epoch. @{
    long long GetTime() const { return time_; }
    void SetTime(long long time) { time_ = time; }
    /// @}

    /// The flag word, not interpreted. @{
    int GetFlag() const { return flag_; }
    void SetFlag(int flag) { flag_ = flag; }
    /// @}

    /// The error text, not part of the JSON form. @{
    const std::string& GetErrorLog() const { return errorLog_; }
    void SetErrorLog(const std::string& errorLog) { errorLog_ = errorLog; }
    /// @}

    /// The query that the document answers. The setter copies its argument; the references remain
    /// valid for the lifetime of the object.
    /// @{
    const CDEQueryResultMetaDataOnly& GetResultMetaDataOnly() const { return resultMetaDataOnly_; }
    CDEQueryResultMetaDataOnly& Get_mutable_ResultMetaDataOnly() { return resultMetaDataOnly_; }
    void SetResultMetaDataOnly(const CDEQueryResultMetaDataOnly& resultMetaDataOnly) {
        resultMetaDataOnly_ = resultMetaDataOnly;
    }
    /// @}

    /// Reads "time", "data", "flag" and "resultMetaDataOnly"; the last stays unchanged if its key
    /// is absent or null. The text under "data" ends at its first zero byte. If it does not parse,
    /// the document keeps its value, and only its parse error reports the failure. Returns true.
    bool LoadFromJson(const vxJson::Value& source) override;

    /// Writes the same four keys, the document as compact text. A number that JSON cannot write
    /// ends the text before it. "resultMetaDataOnly" replaces an old entry as a whole; if saving it
    /// throws, the old entry is unchanged. Not for a moved-from object.
    ///
    /// Throws std::length_error if the text has 2 GiB or more; `target` is then unchanged.
    bool SaveToJson(vxJson::Value& target) const override;

  private:
    rapidjson::Document data_;
    long long time_ = 0;
    int flag_ = 0;
    std::string errorLog_;
    CDEQueryResultMetaDataOnly resultMetaDataOnly_;
};
