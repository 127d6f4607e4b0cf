#include <gtest/gtest.h>

#include "retention/CDataEngineCleanSetting.h"
#include "tests/support/Transfer.h"

namespace {

vxJson::Value Remove(const CDataEngineCleanRemove& o) {
    return Object({{"checked", o.GetChecked()}, {"keepMonth", o.GetKeepMonth()}});
}

vxJson::Value Shrink(const CDataEngineCleanShrink& o) {
    return Object({{"checked", o.GetChecked()},
                   {"keepMonth", o.GetKeepMonth()},
                   {"keepCount", o.GetKeepCount()}});
}

TEST(Retention, LoadsAndSavesNothing) {
    CheckTransfer(
        TEST_DATA "/classes.txt",
        {Transfer<CDataEngineCleanShrink>(Shrink), Transfer<CDataEngineCleanRemove>(Remove),
         Transfer<CDataEngineCleanSetting>([](const auto& o) {
             return Object({{"shrink", Shrink(o.GetShrink())}, {"remove", Remove(o.GetRemove())}});
         })});
}

}  // namespace
