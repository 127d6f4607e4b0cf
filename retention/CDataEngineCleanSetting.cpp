#include "retention/CDataEngineCleanSetting.h"

bool CDataEngineCleanSetting::LoadFromJson(const vxJson::Value& source) {
    shrink_.LoadFromJson(source["shrink"]);
    remove_.LoadFromJson(source["remove"]);
    return true;
}

bool CDataEngineCleanSetting::SaveToJson(vxJson::Value&) const {
    return true;
}
