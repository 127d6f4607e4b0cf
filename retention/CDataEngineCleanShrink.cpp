#include "retention/CDataEngineCleanShrink.h"

bool CDataEngineCleanShrink::LoadFromJson(const vxJson::Value& source) {
    checked_ = source["checked"].asBool();
    keepMonth_ = source["keepMonth"].asInt();
    keepCount_ = source["keepCount"].asInt();
    return true;
}

bool CDataEngineCleanShrink::SaveToJson(vxJson::Value&) const {
    return true;
}
