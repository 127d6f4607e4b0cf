#include "query/CDEQueryResultStructureData.h"

#include <cstring>
#include <utility>

#include "contracts/detail/Values.h"
#include "documents/ParseJson.h"
#include "documents/RenderJson.h"

using dataengine::NullValue;
using dataengine::TakeText;
using dataengine::TimeValue;

namespace {

/// Lets `document` fail on `text`, which does not parse, as Parse with its default flags does: the
/// value stays, error code and offset tell. Without recursion on depth.
void FailToParse(rapidjson::Document& document, const char* text) {
    // The iterative parser takes a text whose root is one of these for an empty one. The recursive
    // one stops right there.
    const char* const root = text + std::strspn(text, " \t\n\r");
    if (*root != '\0' && std::strchr(",:]}", *root) != nullptr) {
        document.Parse(text);
    } else {
        document.Parse<rapidjson::kParseDefaultFlags | rapidjson::kParseIterativeFlag>(text);
    }
}

/// Parses the zero-terminated `text` into `document`, which does not do so itself: it would not
/// notice the end of memory. But only its own parse sets and clears its parse error.
void ParseInto(rapidjson::Document& document, const char* text) {
    rapidjson::Value value;
    if (!dataengine::ParseJson(text, value, document.GetAllocator())) {
        FailToParse(document, text);
        return;
    }
    if (document.HasParseError()) document.Parse("null");
    static_cast<rapidjson::Value&>(document) = std::move(value);
}

}  // namespace

CDEQueryResultStructureData::CDEQueryResultStructureData(CDEQueryResultStructureData&& other)
    : data_(std::move(other.data_)),
      time_(other.time_),
      flag_(other.flag_),
      errorLog_(TakeText(other.errorLog_)),
      resultMetaDataOnly_(std::move(other.resultMetaDataOnly_)) {}

CDEQueryResultStructureData& CDEQueryResultStructureData::operator=(
    CDEQueryResultStructureData&& other) {
    data_ = std::move(other.data_);
    time_ = other.time_;
    flag_ = other.flag_;
    errorLog_ = TakeText(other.errorLog_);
    resultMetaDataOnly_ = std::move(other.resultMetaDataOnly_);
    return *this;
}

bool CDEQueryResultStructureData::LoadFromJson(const vxJson::Value& source) {
    time_ = source["time"].asTime();
    ParseInto(data_, source["data"].asBinary().c_str());
    flag_ = source["flag"].asInt();
    const vxJson::Value& metaData = source["resultMetaDataOnly"];
    if (!metaData.isNull()) resultMetaDataOnly_.LoadFromJson(metaData);
    return true;
}

bool CDEQueryResultStructureData::SaveToJson(vxJson::Value& target) const {
    target["time"] = TimeValue(time_);
    dataengine::JsonBuffer text;
    dataengine::JsonWriter writer(text);
    dataengine::RenderJson(data_, writer);
    target["data"] = vxJson::Value(text.GetString(), static_cast<int>(text.GetSize()));
    target["flag"] = flag_;
    vxJson::Value& metaData = target["resultMetaDataOnly"];
    metaData = NullValue();
    resultMetaDataOnly_.SaveToJson(metaData);
    return true;
}
