#include "retention/CDataEngineCleanRemove.h"

bool CDataEngineCleanRemove::LoadFromJson(const vxJson::Value& source) {
    checked_ = source["checked"].asBool();
    keepMonth_ = source["keepMonth"].asInt();
    return true;
}

bool CDataEngineCleanRemove::SaveToJson(vxJson::Value&) const {
    return true;
}
