#include <gtest/gtest.h>

#include <type_traits>

#include "descriptors/CDEDeviceInfo.h"
#include "descriptors/CDEDeviceMetadata.h"
#include "descriptors/CDETimeRange.h"
#include "tests/support/Transfer.h"

namespace {

static_assert(std::is_polymorphic_v<CDEDeviceMetadata> &&
              !std::is_base_of_v<IJsonSerialize, CDEDeviceMetadata> &&
              !std::has_virtual_destructor_v<CDEDeviceMetadata>);

vxJson::Value ShowLocation(const CDEDeviceDataLocation& o) {
    return Object("collectionName", o.GetCollectionName(), "fileName", o.GetFileName(), "offset",
                  o.GetOffSet(), "len", o.GetLen());
}

TEST(Descriptors, LoadSaveAndMove) {
    Transfer<CDEDeviceInfo>::Check("CDEDeviceInfo", [](const auto& o) {
        return Object("devId", o.GetDevId(), "devType", o.GetDevType());
    });
    Transfer<CDEDeviceDataLocation>::Check("CDEDeviceDataLocation", ShowLocation);
    Transfer<CDEDeviceMetadata>::Check(
        "CDEDeviceMetadata",
        [](const auto& o) {
            return Object("devId", o.GetDevId(), "name", o.GetName(), "type", o.GetType(),
                          "sourceType", o.GetSourceType(), "param", o.GetParam(), "props",
                          o.GetProperties(), "md5", o.GetMD5(), "md5CA", o.GetMD5CA(), "flag",
                          o.GetFlag(), "time", o.GetTime(), "dataLocation",
                          ShowLocation(o.GetDataLocation()), "data", o.GetData());
        },
        [](auto& o) {
            o.SetFlag(8);
            o.SetMD5CA("ca");
        });
}

TEST(Descriptors, ALocationIsBuiltFromItsParts) {
    EXPECT_EQ(ShowLocation(CDEDeviceDataLocation("c", "f", 5, 6)),
              Object("collectionName", "c", "fileName", "f", "offset", 5, "len", 6));
}

TEST(Descriptors, ATimeRangeStartsAtItsEarlierTime) {
    const long long early = -9007199254740993;
    for (const CDETimeRange& range : {CDETimeRange(early, 1), CDETimeRange(1, early)}) {
        EXPECT_EQ(range.GetStartTime(), early);
        EXPECT_EQ(range.GetEndTime(), 1);
    }
}

}  // namespace
