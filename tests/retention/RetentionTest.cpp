#include <gtest/gtest.h>

#include "retention/CDataEngineCleanSetting.h"
#include "tests/support/Transfer.h"

namespace {

vxJson::Value ShowRemove(const CDataEngineCleanRemove& o) {
    return Object("checked", o.GetChecked(), "keepMonth", o.GetKeepMonth());
}

vxJson::Value ShowShrink(const CDataEngineCleanShrink& o) {
    return Object("checked", o.GetChecked(), "keepMonth", o.GetKeepMonth(), "keepCount",
                  o.GetKeepCount());
}

TEST(Retention, LoadsAndSavesNothing) {
    Transfer<CDataEngineCleanShrink>::Check("CDataEngineCleanShrink", ShowShrink);
    Transfer<CDataEngineCleanRemove>::Check("CDataEngineCleanRemove", ShowRemove);
    Transfer<CDataEngineCleanSetting>::Check("CDataEngineCleanSetting", [](const auto& o) {
        return Object("shrink", ShowShrink(o.GetShrink()), "remove", ShowRemove(o.GetRemove()));
    });
}

}  // namespace
