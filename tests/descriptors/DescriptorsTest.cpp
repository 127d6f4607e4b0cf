#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "descriptors/CDEDeviceMetadata.h"
#include "descriptors/CDETimeRange.h"

namespace {

TEST(Descriptors, ARangeStartsAtItsEarlierTime) {
    using Pair = std::pair<long long, long long>;
    const auto range = [](long long a, long long b) {
        const CDETimeRange built(a, b);
        return Pair(built.GetStartTime(), built.GetEndTime());
    };
    EXPECT_EQ(range(5, 3), Pair(3, 5));
    EXPECT_EQ(range(3, 5), Pair(3, 5));
    EXPECT_EQ(range(1, -9007199254740993), Pair(-9007199254740993, 1));
    EXPECT_EQ(CDETimeRange().GetStartTime() + CDETimeRange().GetEndTime(), 0);
}

// The setters are oddly named and some of their fields are in no JSON form.
TEST(Descriptors, EverySetterFillsItsOwnField) {
    CDEDeviceMetadata m;
    std::string type = "type";
    m.SetDevId("devId");
    m.SetName("name");
    m.SetType(type);
    m.SetSourceType("sourceType");
    m.SetParam("param");
    m.SetProperties("properties");
    m.SetMD5("md5");
    m.SetMD5CA("md5CA");
    m.SetDate("data");
    m.SetFlag(1);
    m.SetTime(2);
    EXPECT_EQ(m.GetDevId() + m.GetName() + m.GetType() + m.GetSourceType() +
                  m.GetParam().asString() + m.GetProperties().asString() + m.GetMD5() +
                  m.GetMD5CA() + m.GetData(),
              "devIdnametypesourceTypeparampropertiesmd5md5CAdata");
    EXPECT_EQ(std::make_pair(m.GetFlag(), m.GetTime()), std::make_pair(1, 2LL));
}

}  // namespace
