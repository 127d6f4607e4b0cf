#pragma once

#include "contracts/IJsonSerialize.h"
#include "query/CDEQueryResultMetaDataOnly.h"
#include "query/CDEQueryResultRawData.h"

/// A stored unit and the query that it answers. In JSON each of the two is an object under its own
/// key; a load leaves a member unchanged if its key is absent or null.
///
/// Thread safety: not safe for concurrent use.
class DATAENGINE_EXPORT CDEQueryResultRawDataPlusMetaData : public IJsonSerialize {
  public:
    /// The query that the unit answers. The setter copies its argument; the references remain valid
    /// for the lifetime of the object. @{
    const CDEQueryResultMetaDataOnly& GetResultMetaDataOnly() const { return resultMetaDataOnly_; }
    CDEQueryResultMetaDataOnly& Get_mutable_ResultMetaDataOnly() { return resultMetaDataOnly_; }
    void SetResultMetaDataOnly(const CDEQueryResultMetaDataOnly& resultMetaDataOnly) {
        resultMetaDataOnly_ = resultMetaDataOnly;
    }
    /// @}

    /// The stored unit. The setter copies its argument; the references remain valid for the
    /// lifetime of the object. @{
    const CDEQueryResultRawData& GetResultRawData() const { return resultRawData_; }
    CDEQueryResultRawData& Get_mutable_ResultRawData() { return resultRawData_; }
    void SetResultRawData(const CDEQueryResultRawData& resultRawData) {
        resultRawData_ = resultRawData;
    }
    /// @}

    /// Reads "resultMetaDataOnly" and "resultRawData" and ignores all other keys.
    bool LoadFromJson(const vxJson::Value& source) override;
    /// Writes both keys. Each replaces an old entry as a whole; if saving a part throws, its old
    /// entry is unchanged.
    bool SaveToJson(vxJson::Value& target) const override;

  private:
    CDEQueryResultMetaDataOnly resultMetaDataOnly_;
    CDEQueryResultRawData resultRawData_;
};
