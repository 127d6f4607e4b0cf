#include "query/CDEQueryResultRawDataPlusMetaData.h"

#include "contracts/detail/Values.h"

using dataengine::NullValue;

namespace {

const char* const kMetaDataKey = "resultMetaDataOnly";
const char* const kRawDataKey = "resultRawData";

}  // namespace

bool CDEQueryResultRawDataPlusMetaData::LoadFromJson(const vxJson::Value& source) {
    const vxJson::Value& metaData = source[kMetaDataKey];
    if (!metaData.isNull()) resultMetaDataOnly_.LoadFromJson(metaData);
    const vxJson::Value& rawData = source[kRawDataKey];
    if (!rawData.isNull()) resultRawData_.LoadFromJson(rawData);
    return true;
}

bool CDEQueryResultRawDataPlusMetaData::SaveToJson(vxJson::Value& target) const {
    vxJson::Value& metaData = target[kMetaDataKey];
    metaData = NullValue();
    resultMetaDataOnly_.SaveToJson(metaData);
    vxJson::Value& rawData = target[kRawDataKey];
    rawData = NullValue();
    resultRawData_.SaveToJson(rawData);
    return true;
}
