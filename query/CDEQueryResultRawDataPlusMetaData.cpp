#include "query/CDEQueryResultRawDataPlusMetaData.h"

#include <utility>

#include "contracts/detail/JsonValues.h"

using dataengine::detail::NullValue;

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
    vxJson::Value metaData = NullValue();
    resultMetaDataOnly_.SaveToJson(metaData);
    target[kMetaDataKey] = std::move(metaData);
    vxJson::Value rawData = NullValue();
    resultRawData_.SaveToJson(rawData);
    target[kRawDataKey] = std::move(rawData);
    return true;
}
