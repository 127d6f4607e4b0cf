#pragma once

#include "contracts/IJsonSerialize.h"
#include "query/CDEQueryResultMetaDataOnly.h"
#include "query/CDEQueryResultRawData.h"

/// A stored unit together with the query that it answers. In JSON each of the two is an object
/// under a key of its own; a load leaves a part whose key is absent or null as it was.
///
/// Thread rule: an object belongs to one thread at a time.
class DATAENGINE_EXPORT CDEQueryResultRawDataPlusMetaData : public IJsonSerialize {
  public:
    /// The query that the unit answers. The references are into the object; the setter copies. @{
    const CDEQueryResultMetaDataOnly& GetResultMetaDataOnly() const { return resultMetaDataOnly_; }
    CDEQueryResultMetaDataOnly& Get_mutable_ResultMetaDataOnly() { return resultMetaDataOnly_; }
    void SetResultMetaDataOnly(const CDEQueryResultMetaDataOnly& resultMetaDataOnly) {
        resultMetaDataOnly_ = resultMetaDataOnly;
    }
    /// @}

    /// The stored unit. The references are into the object; the setter copies. @{
    const CDEQueryResultRawData& GetResultRawData() const { return resultRawData_; }
    CDEQueryResultRawData& Get_mutable_ResultRawData() { return resultRawData_; }
    void SetResultRawData(const CDEQueryResultRawData& resultRawData) {
        resultRawData_ = resultRawData;
    }
    /// @}

    /// Reads "resultMetaDataOnly" and "resultRawData", and nothing at the top level.
    bool LoadFromJson(const vxJson::Value& source) override;
    /// Writes both keys, replacing what stood there.
    bool SaveToJson(vxJson::Value& target) const override;

  private:
    CDEQueryResultMetaDataOnly resultMetaDataOnly_;
    CDEQueryResultRawData resultRawData_;
};
