#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "query/CDEDeviceDataQueryInfo.h"
#include "query/CDEQueryResultRawDataPlusMetaData.h"
#include "query/CDEQueryResultStructureData.h"
#include "query/CDEStructureQueryInfo.h"
#include "query/CDETableQueryInfo.h"
#include "tests/support/Texts.h"
#include "tests/support/Transfer.h"

namespace {

static_assert(std::is_same_v<decltype(std::declval<const CDEStructureQueryInfo&>().GetRtnFields()),
                             vxJson::Value&>);

vxJson::Value List(const std::vector<int>& numbers) {
    vxJson::Value list;
    for (const int number : numbers) list.append(number);
    return list;
}

vxJson::Value RawData(const CDEQueryResultRawData& o) {
    return Object({{"time", o.GetTime()},
                   {"data", {o.GetData(), vxJson::binaryKind}},
                   {"flag", o.GetFlag()},
                   {"md5", o.GetMD5()},
                   {"taskId", o.GetTaskId()},
                   {"taskIndex", o.GetTaskIndex()},
                   {"extraId", o.GetExtraId()},
                   {"dataSource", o.GetDataSource()},
                   {"errorLog", o.GetErrorLog()}});
}

vxJson::Value MetaData(const CDEQueryResultMetaDataOnly& o) {
    return Object({{"day", o.GetDay()},
                   {"devId", o.GetDeviceId()},
                   {"type", o.GetType()},
                   {"name", o.GetName()},
                   {"param", o.GetParam()}});
}

TEST(Query, LoadSaveAndMove) {
    CheckTransfer(
        TEST_DATA "/classes.txt",
        {Transfer<CDEDeviceDataQueryInfo>([](const auto& o) {
             return Object({{"devId", o.GetDeviceId()},
                            {"type", o.GetType()},
                            {"name", o.GetName()},
                            {"param", o.GetParam()}});
         }),
         Transfer<CDETableQueryInfo>([](const auto& o) {
             return Object({{"name", o.GetTableName()}, {"param", o.GetParams()}});
         }),
         Transfer<CDEStructureQueryInfo>([](const auto& o) {
             return Object({{"name", o.GetLocation()},
                            {"param", o.GetParams()},
                            {"rtnFields", o.GetRtnFields()},
                            {"devTypes", List(o.GetDevTypes())}});
         }),
         Transfer<CDEQueryResultRawData>(RawData), Transfer<CDEQueryResultMetaDataOnly>(MetaData),
         Transfer<CDEQueryResultRawDataPlusMetaData>([](const auto& o) {
             return Object({{"resultMetaDataOnly", MetaData(o.GetResultMetaDataOnly())},
                            {"resultRawData", RawData(o.GetResultRawData())}});
         }),
         Transfer<CDEQueryResultStructureData>(
             [](const auto& o) {
                 return Object({{"time", o.GetTime()},
                                {"data", Text(o.GetData_RO())},
                                {"parseError", int{o.GetData_RO().GetParseError()}},
                                {"flag", o.GetFlag()},
                                {"resultMetaDataOnly", MetaData(o.GetResultMetaDataOnly())},
                                {"errorLog", o.GetErrorLog()}});
             },
             [](auto& o) { o.SetErrorLog("log"); })});
}

}  // namespace
