// What every class with a JSON form shares, of this room and of its neighbours: loading, saving,
// moving and wrong kinds, one row for a class.
#include <VxUtil/vxJson.h>
#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "descriptors/CDEDeviceInfo.h"
#include "descriptors/CDEDeviceMetadata.h"
#include "descriptors/CDETimeRange.h"
#include "query/CDEDeviceDataQueryInfo.h"
#include "query/CDEQueryResultRawDataPlusMetaData.h"
#include "query/CDEQueryResultStructureData.h"
#include "query/CDEStructureQueryInfo.h"
#include "query/CDETableQueryInfo.h"
#include "retention/CDataEngineCleanSetting.h"
#include "tests/support/Texts.h"
#include "variables/ParserPriorityDAO.h"
#include "variables/VariableMappingDAO.h"

namespace {

template <typename... T>
constexpr bool kSerialisable = (std::is_base_of_v<IJsonSerialize, T> && ...);
static_assert(kSerialisable<CDataEngineCleanSetting, CDataEngineCleanRemove, CDataEngineCleanShrink,
                            CDEDeviceDataLocation, CDEDeviceDataQueryInfo, CDEDeviceInfo,
                            CDEQueryResultMetaDataOnly, CDEQueryResultRawData,
                            CDEQueryResultRawDataPlusMetaData, CDEQueryResultStructureData,
                            CDEStructureQueryInfo, CDETableQueryInfo>);
static_assert(std::is_polymorphic_v<CDEDeviceMetadata> && !kSerialisable<CDEDeviceMetadata> &&
              !std::has_virtual_destructor_v<CDEDeviceMetadata>);
static_assert(!std::is_polymorphic_v<CDETimeRange> && !std::is_polymorphic_v<VariableMappingDAO> &&
              !std::is_polymorphic_v<ParserPriorityDAO>);
static_assert(!std::is_copy_constructible_v<CDEQueryResultStructureData> &&
              !std::is_copy_assignable_v<CDEQueryResultStructureData>);
static_assert(std::is_same_v<decltype(std::declval<const CDEStructureQueryInfo&>().GetRtnFields()),
                             vxJson::Value&>);

// What an object shows through its accessors, as text.
struct Observer {
    static std::string Text(const std::string& text) { return text; }
    static std::string Text(long long number) { return std::to_string(number); }
    static std::string Text(const vxJson::Value& value) { return value.toString(false); }

    template <typename... T>
    static std::string Join(const T&... fields) {
        return ((Text(fields) + "|") + ...);
    }

    template <typename Numbers>
    static std::string List(const Numbers& numbers) {
        std::string text;
        for (const int number : numbers) text += std::to_string(number) + ",";
        return text;
    }

    using S = std::string;
    static S Fields(const CDEDeviceInfo& o) { return Join(o.GetDevId(), o.GetDevType()); }
    static S Fields(const CDEDeviceDataLocation& o) {
        return Join(o.GetCollectionName(), o.GetFileName(), o.GetOffSet(), o.GetLen());
    }
    static S Fields(const CDEDeviceMetadata& o) {
        return Join(o.GetDevId(), o.GetName(), o.GetType(), o.GetSourceType(), o.GetParam(),
                    o.GetProperties(), o.GetMD5(), o.GetMD5CA(), o.GetFlag(), o.GetTime(),
                    Fields(o.GetDataLocation()), o.GetData());
    }
    static S Fields(const CDEDeviceDataQueryInfo& o) {
        return Join(o.GetDeviceId(), o.GetType(), o.GetName(), o.GetParam());
    }
    static S Fields(const CDETableQueryInfo& o) { return Join(o.GetTableName(), o.GetParams()); }
    static S Fields(const CDEStructureQueryInfo& o) {
        return Join(o.GetLocation(), o.GetParams(), o.GetRtnFields(), List(o.GetDevTypes()));
    }
    static S Fields(const CDEQueryResultRawData& o) {
        return Join(o.GetTime(), o.GetData(), o.GetFlag(), o.GetMD5(), o.GetTaskId(),
                    o.GetTaskIndex(), o.GetExtraId(), o.GetDataSource(), o.GetErrorLog());
    }
    static S Fields(const CDEQueryResultMetaDataOnly& o) {
        return Join(o.GetDay(), o.GetDeviceId(), o.GetType(), o.GetName(), o.GetParam());
    }
    static S Fields(const CDEQueryResultRawDataPlusMetaData& o) {
        return Join(Fields(o.GetResultMetaDataOnly()), Fields(o.GetResultRawData()));
    }
    static S Fields(const CDEQueryResultStructureData& o) {
        return Join(o.GetTime(), ::Text(o.GetData_RO()), o.GetData_RO().GetParseError(),
                    o.GetFlag(), o.GetErrorLog(), Fields(o.GetResultMetaDataOnly()));
    }
    static S Fields(const CDataEngineCleanShrink& o) {
        return Join(o.GetChecked(), o.GetKeepMonth(), o.GetKeepCount());
    }
    static S Fields(const CDataEngineCleanRemove& o) {
        return Join(o.GetChecked(), o.GetKeepMonth());
    }
    static S Fields(const CDataEngineCleanSetting& o) {
        return Join(Fields(o.GetShrink()), Fields(o.GetRemove()));
    }
    static S Fields(const ParserPriorityDAO& o) {
        return Join(o.GetDevType(), o.GetParserPath(), o.GetTimeStamp(), o.GetOrder());
    }
    static S Fields(const MappingInstance& o) {
        return Join(List(o.deviceType), o.parserPath, o.parserName, o.bizType, o.varName,
                    o.varFullName);
    }
    static S Fields(const VariableMappingDAO& o) {
        S text = Join(o.GetId(), o.GetMappingType(), o.GetGvPath(), o.GetMappingSize());
        for (const MappingInstance& i : o.GetAllMappingVariable()) text += Fields(i);
        return text;
    }

    // Gives a value to what no document reaches.
    template <typename T>
    static void Prepare(T&) {}
    static void Prepare(CDEQueryResultStructureData& o) { o.SetErrorLog("log"); }
    static void Prepare(CDEDeviceMetadata& o) {
        o.SetFlag(8);
        o.SetMD5CA("ca");
    }
};

struct Loaded {
    std::string fields;
    bool failed;
};

// Loads one document after the other into one object.
template <typename T>
Loaded Load(const std::vector<vxJson::Value>& documents) {
    T object;
    Observer::Prepare(object);
    try {
        for (const vxJson::Value& document : documents) {
            EXPECT_TRUE(object.LoadFromJson(document));
        }
    } catch (const vxJson::Error&) {
        return {Observer::Fields(object), true};
    }
    return {Observer::Fields(object), false};
}

template <typename T, typename = void>
constexpr bool kSaves = false;
template <typename T>
constexpr bool kSaves<T, std::void_t<decltype(&T::SaveToJson)>> = true;

const char* const kTarget = R"({"keep":1,"resultMetaDataOnly":{"old":1},"resultRawData":[2]})";

// Saves what a document holds into a target that holds something already.
template <typename T>
vxJson::Value Save(const vxJson::Value& document) {
    vxJson::Value target = Json(kTarget);
    if constexpr (kSaves<T>) {
        T object;
        Observer::Prepare(object);
        object.LoadFromJson(document);
        EXPECT_TRUE(object.SaveToJson(target));
    }
    return target;
}

// The fields of an object that has been moved from, by construction and by assignment.
template <typename T>
std::string MoveFrom(const vxJson::Value& document) {
    T source;
    Observer::Prepare(source);
    source.LoadFromJson(document);
    const std::string before = Observer::Fields(source);
    T built(std::move(source));
    EXPECT_EQ(Observer::Fields(built), before);
    T assigned;
    assigned = std::move(built);
    EXPECT_EQ(Observer::Fields(assigned), before);
    EXPECT_EQ(Observer::Fields(built), Observer::Fields(source));
    if constexpr (std::is_copy_constructible_v<T>) {
        T& self = assigned;
        assigned = self;
        EXPECT_EQ(Observer::Fields(assigned), before) << "copied to itself";
        assigned = std::move(self);
        EXPECT_EQ(Observer::Fields(assigned), before) << "moved to itself";
        const T copy(assigned);
        EXPECT_EQ(Observer::Fields(copy) + Observer::Fields(assigned), before + before) << "copied";
    }
    return Observer::Fields(source) == before ? "kept" : Observer::Fields(source);
}

using Keys = std::vector<std::string>;

vxJson::Value Pick(const vxJson::Value& document, const Keys& keys) {
    vxJson::Value picked;
    for (const std::string& key : keys) picked[key] = document[key];
    return picked;
}

const Keys kLocationKeys = {"collectionName", "fileName", "offset", "len"};
const Keys kMetaKeys = {"day", "devId", "type", "name", "param"};
const Keys kRawKeys = {"time",      "data",    "flag",       "md5",     "taskId",
                       "taskIndex", "extraId", "dataSource", "errorLog"};
const Keys kShrinkKeys = {"checked", "keepMonth", "keepCount"};
const Keys kRemoveKeys = {"checked", "keepMonth"};
const Keys kInstanceKeys = {"deviceType", "parserPath", "parserName",
                            "bizType",    "varName",    "varFullName"};

// One document serves all classes: each finds its own keys in it, the embedded ones too.
vxJson::Value Document(const std::string& text) {
    vxJson::Value document = Json(text);
    document["dataLocation"] = Pick(document, kLocationKeys);
    document["resultMetaDataOnly"] = Pick(document, kMetaKeys);
    document["resultRawData"] = Pick(document, kRawKeys);
    document["shrink"] = Pick(document, kShrinkKeys);
    document["remove"] = Pick(document, kRemoveKeys);
    document["mappingVars"].append(Pick(document, kInstanceKeys));
    return document;
}

const char* const kStale =
    R"({"devId":"-","devType":9,"collectionName":"-","fileName":"-","offset":9,"len":9,"name":"-",
        "type":"-","sourceType":"-","param":9,"props":9,"md5":"-","time":9,"data":"[9]",
        "rtnFields":9,"devTypes":[9],"flag":9,"taskId":"-","taskIndex":9,"extraId":"-",
        "dataSource":9,"errorLog":"-","day":9,"checked":true,"keepMonth":9,"keepCount":9,
        "_id":"-","mappingType":9,"gvPath":"-","deviceType":[9],"path":"-","ts":9,"order":9})";

// No two texts and no two numbers alike, and some keys that nothing reads. The data is "[2.5]".
const char* const kFresh =
    R"({"devId":"d","devType":-3,"collectionName":"c","fileName":"f","offset":9007199254740993,
        "len":-4294967297,"name":"n","type":"t","sourceType":"s","param":{"p":[1]},"props":[2],
        "md5":"m","time":{"$date":{"$numberLong":"-9007199254740993"}},
        "data":{"$binary":{"base64":"WzIuNV0=","subType":"00"}},"rtnFields":["r"],
        "devTypes":[5,-1],"flag":3,"taskId":"i","taskIndex":2,"extraId":"x","dataSource":-1,
        "errorLog":"e","day":-2,"checked":true,"keepMonth":-6,"keepCount":7,"_id":"u",
        "mappingType":0,"gvPath":"g","deviceType":[3,1,3],"parserPath":"pp","parserName":"pn",
        "bizType":"b","varName":"$v","varFullName":"w","path":"p","ts":-4,"order":-1,
        "tableName":"no","location":"no","md5CA":"no","md5ca":"no","timeStamp":8})";

struct Subject {
    const char* name;
    Loaded (*load)(const std::vector<vxJson::Value>&);
    vxJson::Value (*save)(const vxJson::Value&);
    std::string (*moveFrom)(const vxJson::Value&);
    Keys keys;              // in the order in which they are read
    std::string loaded;     // the fields after a load of the stale document and of the fresh one
    std::string cleared;    // the fields after a load of the stale document and of an empty one
    std::string movedFrom;  // the fields that a move leaves after a load of the fresh document
    Keys saved;             // the keys that are saved
};

template <typename T>
Subject Row(const char* name, const Keys& keys, const std::string& loaded,
            const std::string& cleared, const std::string& movedFrom,
            const std::optional<Keys>& saved = std::nullopt) {
    return {name,   Load<T>, Save<T>,   MoveFrom<T>,         keys,
            loaded, cleared, movedFrom, saved.value_or(keys)};
}

std::vector<Subject> Subjects() {
    const Keys none;
    return {
        Row<CDEDeviceInfo>("DeviceInfo", {"devId", "devType"}, "d|-3|", "|0|", "|-3|"),
        Row<CDEDeviceDataLocation>("DeviceDataLocation", kLocationKeys,
                                   "c|f|9007199254740993|-4294967297|", "||0|0|",
                                   "||9007199254740993|-4294967297|"),
        Row<CDEDeviceMetadata>(
            "DeviceMetadata",
            {"devId", "name", "type", "sourceType", "param", "props", "md5", "time", "dataLocation",
             "data"},
            R"(d|n|t|s|{"p":[1]}|[2]|m|ca|8|-9007199254740993|c|f|9007199254740993|-4294967297|)"
            "|[2.5]|",
            "||||null|null||ca|8|0|||0|0|||", "kept",
            Keys{"devId", "name", "type", "sourceType", "param", "props", "md5", "time",
                 "dataLocation"}),
        Row<CDEDeviceDataQueryInfo>("DeviceDataQueryInfo", {"devId", "type", "name", "param"},
                                    R"(d|t|n|{"p":[1]}|)", "|||null|", R"(|||{"p":[1]}|)"),
        Row<CDETableQueryInfo>("TableQueryInfo", {"name", "param"}, R"(n|{"p":[1]}|)", "|null|",
                               R"(|{"p":[1]}|)"),
        // Device types are added to.
        Row<CDEStructureQueryInfo>("StructureQueryInfo", {"name", "param", "rtnFields", "devTypes"},
                                   R"(n|{"p":[1]}|["r"]|9,5,-1,|)", "|null|null|9,|", "kept"),
        Row<CDEQueryResultRawData>("RawData", kRawKeys, "-9007199254740993|[2.5]|3|m|i|2|x|-1|e|",
                                   "0||0|||0||0||", "-9007199254740993||3|||2||-1||"),
        Row<CDEQueryResultMetaDataOnly>("MetaDataOnly", kMetaKeys, R"(-2|d|t|n|{"p":[1]}|)",
                                        "0||||null|", R"(-2||||{"p":[1]}|)"),
        // An absent part stays as it was.
        Row<CDEQueryResultRawDataPlusMetaData>(
            "RawDataPlusMetaData", {"resultMetaDataOnly", "resultRawData"},
            R"(-2|d|t|n|{"p":[1]}||-9007199254740993|[2.5]|3|m|i|2|x|-1|e||)",
            "9|-|-|-|9||9|[9]|9|-|-|9|-|9|-||",
            R"(-2||||{"p":[1]}||-9007199254740993||3|||2||-1|||)"),
        // A text that does not parse, here an absent one, leaves the document and an error.
        Row<CDEQueryResultStructureData>(
            "StructureData", {"time", "data", "flag", "resultMetaDataOnly"},
            R"(-9007199254740993|[2.5]|0|3|log|-2|d|t|n|{"p":[1]}||)", "0|[9]|1|0|log|9|-|-|-|9||",
            R"(-9007199254740993|null|0|3||-2||||{"p":[1]}||)"),
        Row<CDataEngineCleanShrink>("CleanShrink", kShrinkKeys, "1|-6|7|", "0|0|0|", "kept", none),
        Row<CDataEngineCleanRemove>("CleanRemove", kRemoveKeys, "1|-6|", "0|0|", "kept", none),
        Row<CDataEngineCleanSetting>("CleanSetting", {"shrink", "remove"}, "1|-6|7||1|-6||",
                                     "0|0|0||0|0||", "kept", none),
        // Instances are added to. Their names have a table of their own.
        Row<VariableMappingDAO>("VariableMapping", {"_id", "mappingType", "gvPath", "mappingVars"},
                                "u|0|g|2|9,||||||1,3,|pp|pn|b|v|v|", "|0||1|9,||||||", "kept",
                                none),
        Row<ParserPriorityDAO>("ParserPriority", {"devType", "path", "ts", "order"},
                               "-3|p|-4|4294967295|", "0||0|0|", "kept", none),
    };
}

TEST(Transfer, LoadsReplaceAppendOrLeaveFields) {
    for (const Subject& s : Subjects()) {
        EXPECT_EQ(s.load({Document(kStale), Document(kFresh)}).fields, s.loaded) << s.name;
        EXPECT_EQ(s.load({Document(kStale), Json("{}")}).fields, s.cleared) << s.name;
    }
}

TEST(Transfer, SavesAddTheirKeysAndComeBackThroughText) {
    for (const long long number : {-9007199254740993LL, std::numeric_limits<long long>::max(),
                                   std::numeric_limits<long long>::min()}) {
        vxJson::Value document = Document(kFresh);
        document["time"] = vxJson::Value(static_cast<unsigned long long>(number), false);
        document["dataLocation"]["offset"] = number;
        document["resultRawData"]["time"] = document["time"];
        for (const Subject& s : Subjects()) {
            vxJson::Value expected = Json(kTarget);
            for (const std::string& key : s.saved) expected[key] = document[key];
            // The one class whose time goes out as a plain number.
            if (s.save == Save<CDEDeviceMetadata>) expected["time"] = number;
            const std::string text = s.save(document).toString(false);
            EXPECT_EQ(text, expected.toString(false)) << s.name;
            EXPECT_EQ(s.save(Json(text)).toString(false), text) << s.name;
            // Every key is written, whatever stands in its field.
            EXPECT_EQ(s.save(Json("{}")).size(), expected.size()) << s.name;
        }
    }
}

TEST(Transfer, MovesEmptyTextsAndKeepTheRest) {
    for (const Subject& s : Subjects()) {
        SCOPED_TRACE(s.name);
        EXPECT_EQ(s.moveFrom(Document(kFresh)), s.movedFrom);
    }
}

// A key of the wrong kind is converted or raises Error; then the keys before it have been read and
// those behind it have not.
TEST(Transfer, WrongKindsStopTheLoadWhereTheyStand) {
    std::vector<vxJson::Value> kinds = {vxJson::Value(99999999999ULL, false),
                                        vxJson::Value("\xff", 1)};
    for (const char* kind :
         {"null", "true", "-1", "1.5", "99999999999", "\"x\"", "[\"x\"]", "{}"}) {
        kinds.push_back(Json(kind));
    }
    std::size_t stopped = 0;
    for (const Subject& s : Subjects()) {
        vxJson::Value readSoFar = Document(kStale);
        bool stops = false;
        for (const std::string& key : s.keys) {
            for (const vxJson::Value& kind : kinds) {
                vxJson::Value document = Document(kFresh);
                document[key] = kind;
                const Loaded loaded = s.load({Document(kStale), document});
                if (!loaded.failed) continue;
                stops = true;
                EXPECT_EQ(loaded.fields, s.load({readSoFar}).fields)
                    << s.name << " " << key << " " << kind.toString(false);
            }
            readSoFar[key] = Document(kFresh)[key];
        }
        stopped += stops;
    }
    // Two classes hold nothing but embedded objects, which read any kind as an empty one.
    EXPECT_EQ(stopped, Subjects().size() - 2);
}

template <typename T>
T ThroughText(const T& sent) {
    vxJson::Value saved;
    sent.SaveToJson(saved);
    T received;
    received.LoadFromJson(Json(saved.toString(false)));
    return received;
}

TEST(Transfer, EveryByteSurvivesText) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
    CDEQueryResultRawData raw;
    raw.SetData(bytes);
    EXPECT_EQ(ThroughText(raw).GetData(), bytes);
    CDEQueryResultStructureData structure;
    structure.GetData().SetString(bytes.data(), 256, structure.GetData().GetAllocator());
    EXPECT_EQ(ThroughText(structure).GetData_RO(), structure.GetData_RO());
}

}  // namespace
