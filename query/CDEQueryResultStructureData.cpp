#include "query/CDEQueryResultStructureData.h"

#include <limits>
#include <stdexcept>
#include <utility>

#include "contracts/detail/JsonValues.h"
#include "contracts/detail/TakeText.h"
#include "contracts/detail/rapidjson/ParseJson.h"
#include "contracts/detail/rapidjson/RenderJson.h"

using dataengine::detail::NullValue;
using dataengine::detail::TakeText;
using dataengine::detail::TimeValue;

CDEQueryResultStructureData::CDEQueryResultStructureData(CDEQueryResultStructureData&& other)
    : CDEQueryResultStructureData() {
    *this = std::move(other);
}

CDEQueryResultStructureData& CDEQueryResultStructureData::operator=(
    CDEQueryResultStructureData&& other) {
    // The metadata is moved first: no other move can throw.
    resultMetaDataOnly_ = std::move(other.resultMetaDataOnly_);
    data_ = std::move(other.data_);
    time_ = other.time_;
    flag_ = other.flag_;
    errorLog_ = TakeText(other.errorLog_);
    return *this;
}

bool CDEQueryResultStructureData::LoadFromJson(const vxJson::Value& source) {
    time_ = source["time"].asTime();
    dataengine::detail::ParseDocument(source["data"].asBinary().c_str(), data_);
    flag_ = source["flag"].asInt();
    const vxJson::Value& metaData = source["resultMetaDataOnly"];
    if (!metaData.isNull()) resultMetaDataOnly_.LoadFromJson(metaData);
    return true;
}

bool CDEQueryResultStructureData::SaveToJson(vxJson::Value& target) const {
    dataengine::detail::JsonBuffer text;
    dataengine::detail::JsonWriter writer(text);
    dataengine::detail::RenderJson(data_, writer);
    if (text.GetSize() > std::numeric_limits<int>::max())
        throw std::length_error("the text of a document exceeds 2147483647 bytes");
    target["time"] = TimeValue(time_);
    target["data"] = vxJson::Value(text.GetString(), static_cast<int>(text.GetSize()));
    target["flag"] = flag_;
    vxJson::Value metaData = NullValue();
    resultMetaDataOnly_.SaveToJson(metaData);
    target["resultMetaDataOnly"] = std::move(metaData);
    return true;
}
