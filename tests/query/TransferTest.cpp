// What every class with a JSON form shares, of every module: loading, saving,
// moving and wrong kinds. classes.txt tells what is expected of each.
#include <VxUtil/vxJson.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <limits>
#include <map>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "descriptors/CDEDeviceInfo.h"
#include "descriptors/CDEDeviceMetadata.h"
#include "query/CDEDeviceDataQueryInfo.h"
#include "query/CDEQueryResultRawDataPlusMetaData.h"
#include "query/CDEQueryResultStructureData.h"
#include "query/CDEStructureQueryInfo.h"
#include "query/CDETableQueryInfo.h"
#include "retention/CDataEngineCleanSetting.h"
#include "tests/support/Rows.h"
#include "tests/support/Texts.h"
#include "variables/ParserPriorityDAO.h"
#include "variables/VariableMappingDAO.h"

namespace {

template <typename T>
constexpr bool kSerialisable = std::is_base_of_v<IJsonSerialize, T>;
static_assert(std::is_polymorphic_v<CDEDeviceMetadata> && !kSerialisable<CDEDeviceMetadata> &&
              !std::has_virtual_destructor_v<CDEDeviceMetadata>);
static_assert(std::is_same_v<decltype(std::declval<const CDEStructureQueryInfo&>().GetRtnFields()),
                             vxJson::Value&>);

// What an object shows through its accessors, as text.
struct Observer {
    using S = std::string;

    template <typename T>
    static const T& Show(const T& value) {
        return value;
    }
    static S Show(const vxJson::Value& value) { return value.toString(false); }
    template <typename... T>
    static S Join(const T&... fields) {
        std::ostringstream text;
        ((text << Show(fields) << ';'), ...);
        return text.str();
    }
    template <typename Numbers>
    static S List(const Numbers& numbers) {
        S text;
        for (const int number : numbers) text += std::to_string(number) + ",";
        return text;
    }

    static S Of(const CDEDeviceInfo& o) { return Join(o.GetDevId(), o.GetDevType()); }
    static S Of(const CDEDeviceDataLocation& o) {
        return Join(o.GetCollectionName(), o.GetFileName(), o.GetOffSet(), o.GetLen());
    }
    static S Of(const CDEDeviceMetadata& o) {
        return Join(o.GetDevId(), o.GetName(), o.GetType(), o.GetSourceType(), o.GetParam(),
                    o.GetProperties(), o.GetMD5(), o.GetMD5CA(), o.GetFlag(), o.GetTime(),
                    Of(o.GetDataLocation()), o.GetData());
    }
    static S Of(const CDEDeviceDataQueryInfo& o) {
        return Join(o.GetDeviceId(), o.GetType(), o.GetName(), o.GetParam());
    }
    static S Of(const CDETableQueryInfo& o) { return Join(o.GetTableName(), o.GetParams()); }
    static S Of(const CDEStructureQueryInfo& o) {
        return Join(o.GetLocation(), o.GetParams(), o.GetRtnFields(), List(o.GetDevTypes()));
    }
    static S Of(const CDEQueryResultRawData& o) {
        return Join(o.GetTime(), o.GetData(), o.GetFlag(), o.GetMD5(), o.GetTaskId(),
                    o.GetTaskIndex(), o.GetExtraId(), o.GetDataSource(), o.GetErrorLog());
    }
    static S Of(const CDEQueryResultMetaDataOnly& o) {
        return Join(o.GetDay(), o.GetDeviceId(), o.GetType(), o.GetName(), o.GetParam());
    }
    static S Of(const CDEQueryResultRawDataPlusMetaData& o) {
        return Join(Of(o.GetResultMetaDataOnly()), Of(o.GetResultRawData()));
    }
    static S Of(const CDEQueryResultStructureData& o) {
        return Join(o.GetTime(), Text(o.GetData_RO()), o.GetData_RO().GetParseError(), o.GetFlag(),
                    o.GetErrorLog(), Of(o.GetResultMetaDataOnly()));
    }
    static S Of(const CDataEngineCleanShrink& o) {
        return Join(o.GetChecked(), o.GetKeepMonth(), o.GetKeepCount());
    }
    static S Of(const CDataEngineCleanRemove& o) { return Join(o.GetChecked(), o.GetKeepMonth()); }
    static S Of(const CDataEngineCleanSetting& o) {
        return Join(Of(o.GetShrink()), Of(o.GetRemove()));
    }
    static S Of(const ParserPriorityDAO& o) {
        return Join(o.GetDevType(), o.GetParserPath(), o.GetTimeStamp(), o.GetOrder());
    }
    static S Of(const VariableMappingDAO& o) {
        S text = Join(o.GetId(), o.GetMappingType(), o.GetGvPath(), o.GetMappingSize());
        for (const MappingInstance& i : o.GetAllMappingVariable()) {
            text += Join(List(i.deviceType), i.parserPath, i.parserName, i.bizType, i.varName,
                         i.varFullName);
        }
        return text;
    }
};

// Loads one document after the other into an object with values in what no document reaches. Its
// fields end in a "!" if that failed.
template <typename T>
std::string Load(T& object, const std::vector<vxJson::Value>& documents) {
    if constexpr (std::is_same_v<T, CDEQueryResultStructureData>) object.SetErrorLog("log");
    if constexpr (std::is_same_v<T, CDEDeviceMetadata>) {
        object.SetFlag(8);
        object.SetMD5CA("ca");
    }
    try {
        for (const vxJson::Value& document : documents) EXPECT_TRUE(object.LoadFromJson(document));
    } catch (const vxJson::Error&) {
        return Observer::Of(object) + "!";
    }
    return Observer::Of(object);
}

template <typename T>
std::string LoadNew(const std::vector<vxJson::Value>& documents) {
    T object;
    return Load(object, documents);
}

const char* const kTarget = R"({"keep":1,"resultMetaDataOnly":{"old":1},"resultRawData":[2]})";

// Saves what a document holds into a target that holds something already.
template <typename T>
vxJson::Value Save(const vxJson::Value& document) {
    vxJson::Value target = Json(kTarget);
    if constexpr (kSerialisable<T> || std::is_same_v<T, CDEDeviceMetadata>) {
        T object;
        Load(object, {document});
        EXPECT_TRUE(object.SaveToJson(target));
    }
    return target;
}

// The fields of an object that has been moved from, by construction and by assignment; it is as
// good as new once it is assigned to.
template <typename T>
std::string MoveFrom(const vxJson::Value& document) {
    T source;
    const std::string before = Load(source, {document});
    T built(std::move(source));
    EXPECT_EQ(Observer::Of(built), before);
    T assigned;
    assigned = std::move(built);
    EXPECT_EQ(Observer::Of(built), Observer::Of(source));
    T& self = assigned;
    if constexpr (std::is_copy_constructible_v<T>) assigned = std::move(self);
    EXPECT_EQ(Observer::Of(assigned), before);
    const std::string after = Observer::Of(source);
    source = T();
    EXPECT_EQ(Load(source, {document}), before);
    return after;
}

std::vector<std::vector<std::string>> Table(const std::string& name) {
    std::ifstream file(TEST_DATA "/" + name);
    return Rows({std::istreambuf_iterator<char>(file), {}});
}

vxJson::Value Document(std::size_t column) {
    vxJson::Value document;
    for (const auto& row : Table("documents.txt")) document[row.at(0)] = Json(row.at(column));
    return document;
}
const vxJson::Value kStale = Document(1);
const vxJson::Value kFresh = Document(2);

struct Subject {
    std::string (*load)(const std::vector<vxJson::Value>&);
    vxJson::Value (*save)(const vxJson::Value&);
    std::string (*moveFrom)(const vxJson::Value&);
    std::map<std::string, std::vector<std::string>> rows;
};

template <typename... T>
std::vector<Subject> Subjects() {
    std::vector<Subject> subjects = {{LoadNew<T>, Save<T>, MoveFrom<T>, {}}...};
    std::size_t classes = 0;
    for (const auto& row : Table("classes.txt")) {
        if (row[0] == "class") ++classes;
        subjects.at(classes - 1).rows[row[0]] = {row.begin() + 1, row.end()};
    }
    return subjects;
}
const std::vector<Subject> kSubjects =
    Subjects<CDEDeviceInfo, CDEDeviceDataLocation, CDEDeviceMetadata, CDEDeviceDataQueryInfo,
             CDETableQueryInfo, CDEStructureQueryInfo, CDEQueryResultRawData,
             CDEQueryResultMetaDataOnly, CDEQueryResultRawDataPlusMetaData,
             CDEQueryResultStructureData, CDataEngineCleanShrink, CDataEngineCleanRemove,
             CDataEngineCleanSetting, VariableMappingDAO, ParserPriorityDAO>();

TEST(Transfer, LoadsReplaceAppendOrLeaveFieldsAndMovesEmptyTexts) {
    for (const Subject& s : kSubjects) {
        SCOPED_TRACE(s.rows.at("class")[0]);
        EXPECT_EQ(s.load({kStale, kFresh}), s.rows.at("loaded")[0]);
        EXPECT_EQ(s.load({kStale, Json("{}")}), s.rows.at("cleared")[0]);
        EXPECT_EQ(s.moveFrom(kFresh), s.rows.at("moved")[0]);
    }
}

TEST(Transfer, SavesAddTheirKeysAndComeBackThroughText) {
    for (const long long number : {-9007199254740993LL, std::numeric_limits<long long>::max(),
                                   std::numeric_limits<long long>::min()}) {
        vxJson::Value document = kFresh;
        document["time"] = vxJson::Value(static_cast<unsigned long long>(number), false);
        document["dataLocation"]["offset"] = number;
        document["resultRawData"]["time"] = document["time"];
        document["resultRawData"]["data"] = vxJson::Value("\0\xff\0", 3);
        for (const Subject& s : kSubjects) {
            SCOPED_TRACE(s.rows.at("class")[0]);
            vxJson::Value expected = Json(kTarget);
            for (const std::string& key : s.rows.at("saves")) expected[key] = document[key];
            // The one class whose time goes out as a plain number.
            if (s.save == Save<CDEDeviceMetadata>) expected["time"] = number;
            const std::string text = s.save(document).toString(false);
            EXPECT_EQ(text, expected.toString(false));
            EXPECT_EQ(s.save(Json(text)).toString(false), text);
            // Every key is written, whatever stands in its field.
            EXPECT_EQ(s.save(Json("{}")).size(), expected.size());
        }
    }
}

// A key of the wrong kind is converted or raises Error; then the keys before it have been read and
// those behind it have not.
TEST(Transfer, WrongKindsStopTheLoadWhereTheyStand) {
    const vxJson::Value kinds =
        Json(R"([null,true,-1,1.5,99999999999,"x",["x"],{},{"$date":{"$numberLong":"99999999999"}},
                 {"$binary":{"base64":"/w==","subType":"00"}}])");
    std::size_t stopped = 0;
    for (const Subject& s : kSubjects) {
        vxJson::Value readSoFar = kStale;
        bool stops = false;
        for (const std::string& key : s.rows.at("reads")) {
            for (int kind = 0; kind < 10; ++kind) {
                vxJson::Value document = kFresh;
                document[key] = kinds[kind];
                const std::string loaded = s.load({kStale, document});
                if (loaded.back() != '!') continue;
                stops = true;
                EXPECT_EQ(loaded, s.load({readSoFar}) + "!")
                    << s.rows.at("class")[0] << " " << key << " " << kinds[kind].toString(false);
            }
            readSoFar[key] = kFresh[key];
        }
        stopped += stops;
    }
    // Two classes hold nothing but embedded objects, which read any kind as an empty one.
    EXPECT_EQ(stopped, kSubjects.size() - 2);
}

}  // namespace
