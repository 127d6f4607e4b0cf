#include <gtest/gtest.h>

#include <type_traits>

#include "query/CDEDeviceDataQueryInfo.h"
#include "query/CDEQueryResultRawDataPlusMetaData.h"
#include "query/CDEQueryResultStructureData.h"
#include "query/CDEStructureQueryInfo.h"
#include "query/CDETableQueryInfo.h"
#include "tests/support/Transfer.h"

namespace {

static_assert(std::is_same_v<decltype(std::declval<const CDEStructureQueryInfo&>().GetRtnFields()),
                             vxJson::Value&>);

vxJson::Value ShowMetaData(const CDEQueryResultMetaDataOnly& o) {
    return Object("day", o.GetDay(), "devId", o.GetDeviceId(), "type", o.GetType(), "name",
                  o.GetName(), "param", o.GetParam());
}

vxJson::Value ShowRawData(const CDEQueryResultRawData& o) {
    return Object("time", o.GetTime(), "data", vxJson::Value(o.GetData(), vxJson::binaryKind),
                  "flag", o.GetFlag(), "md5", o.GetMD5(), "taskId", o.GetTaskId(), "taskIndex",
                  o.GetTaskIndex(), "extraId", o.GetExtraId(), "dataSource", o.GetDataSource(),
                  "errorLog", o.GetErrorLog());
}

vxJson::Value ShowDevTypes(const CDEStructureQueryInfo& o) {
    vxJson::Value list;
    for (const int number : o.GetDevTypes()) list.append(number);
    return list;
}

TEST(Query, DescriptorsLoadSaveAndMove) {
    Transfer<CDEDeviceDataQueryInfo>::Check("CDEDeviceDataQueryInfo", [](const auto& o) {
        return Object("devId", o.GetDeviceId(), "type", o.GetType(), "name", o.GetName(), "param",
                      o.GetParam());
    });
    Transfer<CDETableQueryInfo>::Check("CDETableQueryInfo", [](const auto& o) {
        return Object("name", o.GetTableName(), "param", o.GetParams());
    });
    Transfer<CDEStructureQueryInfo>::Check("CDEStructureQueryInfo", [](const auto& o) {
        return Object("name", o.GetLocation(), "param", o.GetParams(), "rtnFields",
                      o.GetRtnFields(), "devTypes", ShowDevTypes(o));
    });
}

TEST(Query, ResultsLoadSaveAndMove) {
    Transfer<CDEQueryResultRawData>::Check("CDEQueryResultRawData", ShowRawData);
    Transfer<CDEQueryResultMetaDataOnly>::Check("CDEQueryResultMetaDataOnly", ShowMetaData);
    Transfer<CDEQueryResultRawDataPlusMetaData>::Check(
        "CDEQueryResultRawDataPlusMetaData", [](const auto& o) {
            return Object("resultMetaDataOnly", ShowMetaData(o.GetResultMetaDataOnly()),
                          "resultRawData", ShowRawData(o.GetResultRawData()));
        });
    Transfer<CDEQueryResultStructureData>::Check(
        "CDEQueryResultStructureData",
        [](const auto& o) {
            return Object("time", o.GetTime(), "data", Text(o.GetData_RO()), "parseError",
                          int{o.GetData_RO().GetParseError()}, "flag", o.GetFlag(),
                          "resultMetaDataOnly", ShowMetaData(o.GetResultMetaDataOnly()), "errorLog",
                          o.GetErrorLog());
        },
        [](auto& o) { o.SetErrorLog("log"); });
}

}  // namespace
