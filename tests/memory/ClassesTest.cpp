#include <algorithm>
#include <type_traits>
#include <utility>

#include "descriptors/CDEDeviceInfo.h"
#include "descriptors/CDEDeviceMetadata.h"
#include "query/CDEDeviceDataQueryInfo.h"
#include "query/CDEQueryResultRawDataPlusMetaData.h"
#include "query/CDEQueryResultStructureData.h"
#include "query/CDEStructureQueryInfo.h"
#include "query/CDETableQueryInfo.h"
#include "retention/CDataEngineCleanSetting.h"
#include "tests/memory/Attempt.h"
#include "tests/support/Texts.h"
#include "variables/CVariableMapping.h"
#include "variables/ParserPriorityDAO.h"
#include "variables/VariableMappingDAO.h"

namespace {

using vxJson::Value;

/// A document that has every key of every class, each with a value that `number` marks; texts are
/// too long for a short string. `number` has one digit.
Value Everything(const char* number) {
    const std::string mark = number;
    const std::string text = "\"a text of many bytes " + mark + "\"";
    std::string members;
    for (const char* key : {"devId", "name", "type", "sourceType", "md5", "collectionName",
                            "fileName", "taskId", "extraId", "errorLog", "_id", "gvPath", "path"}) {
        members += "\"" + std::string(key) + "\":" + text + ",";
    }
    for (const char* key : {"time", "flag", "day", "taskIndex", "dataSource", "offset", "len",
                            "devType", "ts", "order", "mappingType"}) {
        members += "\"" + std::string(key) + "\":" + mark + ",";
    }
    for (const char* key : {"param", "props", "rtnFields"}) {
        members += "\"" + std::string(key) + "\":{\"a\":[" + text + "]},";
    }
    return Json("{" + members + "\"data\":" + text + ",\"devTypes\":[" + mark + "]}");
}

/// What a `T` loads: the same, with itself in the places of sub-objects. A document's text is so
/// large that its values don't fit in one piece of the pool.
template <class T>
Value Source(const char* number) {
    const Value flat = Everything(number);
    Value value = flat;
    for (const char* key : {"dataLocation", "resultMetaDataOnly", "resultRawData"}) {
        value[key] = flat;
    }
    if constexpr (std::is_same_v<T, CDEQueryResultStructureData>) {
        value["data"] = R"([{"name":"a name of many bytes )" + std::string(70000, *number) +
                        R"(","value":[1,{"a":2.5}]},")" + std::string(70000, 't') + "\"]";
    }
    return value;
}

/// The value at a path of keys with dots between them.
const Value& At(const Value& value, const std::string& path) {
    const std::size_t dot = path.find('.');
    const Value& member = value[path.substr(0, dot)];
    return dot == std::string::npos ? member : At(member, path.substr(dot + 1));
}

template <class T>
Value Saved(const T& object) {
    Value value;
    object.SaveToJson(value);
    return value;
}

using Paths = std::vector<std::string>;

// What a class saves, in the order in which it loads.
template <class T>
const Paths kPaths = {};
template <>
const Paths kPaths<CDEDeviceDataLocation> = {"collectionName", "fileName", "offset", "len"};
template <>
const Paths kPaths<CDEDeviceInfo> = {"devId", "devType"};
template <>
const Paths kPaths<CDEDeviceMetadata> = {"devId",
                                         "name",
                                         "type",
                                         "sourceType",
                                         "param",
                                         "props",
                                         "md5",
                                         "time",
                                         "dataLocation.collectionName",
                                         "dataLocation.fileName",
                                         "dataLocation.len"};
template <>
const Paths kPaths<CDEDeviceDataQueryInfo> = {"devId", "type", "name", "param"};
template <>
const Paths kPaths<CDETableQueryInfo> = {"name", "param"};
template <>
const Paths kPaths<CDEStructureQueryInfo> = {"name", "param", "rtnFields"};
template <>
const Paths kPaths<CDEQueryResultMetaDataOnly> = {"day", "devId", "type", "name", "param"};
template <>
const Paths kPaths<CDEQueryResultRawData> = {
    "time", "data", "flag", "md5", "taskId", "taskIndex", "extraId", "dataSource", "errorLog"};
template <>
const Paths kPaths<CDEQueryResultRawDataPlusMetaData> = {
    "resultMetaDataOnly.day", "resultMetaDataOnly.name", "resultMetaDataOnly.param",
    "resultRawData.data",     "resultRawData.md5",       "resultRawData.errorLog"};
template <>
const Paths kPaths<CDEQueryResultStructureData> = {"time", "data", "flag", "resultMetaDataOnly.day",
                                                   "resultMetaDataOnly.param"};

/// A load that fails leaves the fields before the failure new and the others old.
template <class T>
void Load(Attempt& attempt) {
    const Value fresh = Source<T>("2");
    T object;
    object.LoadFromJson(Source<T>("1"));
    const Value before = Saved(object);
    T model;
    model.LoadFromJson(fresh);
    const Value after = Saved(model);

    const bool done = attempt.Succeeds([&] { object.LoadFromJson(fresh); });
    const Value now = Saved(object);
    bool reached = true;
    for (const std::string& path : kPaths<T>) {
        ASSERT_NE(At(before, path), At(after, path)) << path;
        if (reached && At(now, path) != At(after, path)) reached = false;
        if (!reached) {
            EXPECT_EQ(At(now, path), At(before, path)) << path;
        }
    }
    EXPECT_TRUE(reached || !done);
    object.LoadFromJson(fresh);
    for (const std::string& path : kPaths<T>) EXPECT_EQ(At(Saved(object), path), At(after, path));
}

template <class T>
void Save(Attempt& attempt) {
    T object;
    object.LoadFromJson(Source<T>("1"));
    const Value expected = Saved(object);
    Value target = Json(R"({"mine":1})");
    const bool done = attempt.Succeeds([&] { object.SaveToJson(target); });
    if (done) {
        EXPECT_EQ(target.size(), expected.size() + 1);
    }
    EXPECT_EQ(At(target, "mine"), Value(1));
    EXPECT_EQ(Saved(object), expected);
}

template <class T>
void CopyAndMove(Attempt& attempt) {
    T source;
    source.LoadFromJson(Source<T>("1"));
    const Value expected = Saved(source);
    T target;
    target.LoadFromJson(Source<T>("2"));
    attempt.Succeeds([&] {
        T copy(source);
        T moved(std::move(copy));
        target = source;
        target = std::move(moved);
    });
    EXPECT_EQ(Saved(source), expected);
    target = source;
    EXPECT_EQ(Saved(target), expected);
}

/// A row for each operation of a class.
template <class T>
void FailClass(const char* name) {
    SCOPED_TRACE(name);
    FailEveryAllocation({"load", Load<T>});
    FailEveryAllocation({"save", Save<T>});
    if constexpr (std::is_copy_constructible_v<T>) {
        FailEveryAllocation({"copy and move", CopyAndMove<T>});
    }
}

TEST(Memory, LoadsSavesAndCopiesClasses) {
    FailClass<CDEDeviceDataLocation>("CDEDeviceDataLocation");
    FailClass<CDEDeviceInfo>("CDEDeviceInfo");
    FailClass<CDEDeviceMetadata>("CDEDeviceMetadata");
    FailClass<CDEDeviceDataQueryInfo>("CDEDeviceDataQueryInfo");
    FailClass<CDETableQueryInfo>("CDETableQueryInfo");
    FailClass<CDEStructureQueryInfo>("CDEStructureQueryInfo");
    FailClass<CDEQueryResultMetaDataOnly>("CDEQueryResultMetaDataOnly");
    FailClass<CDEQueryResultRawData>("CDEQueryResultRawData");
    FailClass<CDEQueryResultRawDataPlusMetaData>("CDEQueryResultRawDataPlusMetaData");
    FailClass<CDEQueryResultStructureData>("CDEQueryResultStructureData");
}

TEST(Memory, LoadsCleanSettingsWithoutAny) {
    const Value source = Json(R"({"shrink":{"checked":true,"keepMonth":3,"keepCount":5},
                                  "remove":{"checked":true,"keepMonth":7}})");
    CDataEngineCleanSetting setting;
    Attempt attempt(1);
    EXPECT_TRUE(attempt.Succeeds([&] { setting.LoadFromJson(source); }));
    EXPECT_EQ(setting.GetShrink().GetKeepCount(), 5);
    EXPECT_EQ(setting.GetRemove().GetKeepMonth(), 7);
}

const DDKey kKey("a parser path of many bytes", "a variable of many bytes");

std::vector<DDKey> Variables() {
    return {kKey, DDKey("another parser path of many bytes", "x"), DDKey("", "y")};
}

bool SameKey(const DDKey& a, const DDKey& b) {
    return !(a < b) && !(b < a);
}

const Operation kOperations[] = {
    {"GetQueryInfo and toPrintString",
     [](Attempt& attempt) {
         CDEQueryResultMetaDataOnly metaData;
         metaData.LoadFromJson(Everything("1"));
         const std::string expected = metaData.toPrintString();
         Value out;
         attempt.Succeeds([&] {
             metaData.GetQueryInfo(out);
             EXPECT_EQ(metaData.toPrintString(), expected);
         });
         EXPECT_EQ(metaData.toPrintString(), expected);
     }},
    {"a parser priority document",
     [](Attempt& attempt) {
         const Value source = Everything("3");
         ParserPriorityDAO priority;
         const bool done = attempt.Succeeds([&] { priority.LoadFromJson(source); });
         EXPECT_EQ(priority.GetDevType(), 3);
         EXPECT_EQ(priority.GetParserPath(), done ? "a text of many bytes 3" : "");
         EXPECT_EQ(priority.GetOrder(), done ? 3u : 0xFFFFFFFF);
     }},
    {"a variable mapping document",
     [](Attempt& attempt) {
         Value source = Everything("2");
         for (const char* name : {"$column one of many bytes", "$column two of many bytes"}) {
             Value instance = Json(R"({"deviceType":[1,2],"parserPath":"a path of many bytes"})");
             instance["varName"] = name;
             instance["varFullName"] = "$table." + std::string(name);
             source["mappingVars"].append(instance);
         }
         VariableMappingDAO mapping;
         const bool done = attempt.Succeeds([&] { mapping.LoadFromJson(source); });
         const std::vector<MappingInstance> loaded = mapping.GetAllMappingVariable();
         if (done) {
             EXPECT_EQ(loaded.size(), 2u);
         }
         const char* const names[] = {"column one of many bytes", "column two of many bytes"};
         for (std::size_t i = 0; i < loaded.size(); ++i) {
             EXPECT_EQ(loaded[i].varName, names[i]);
             EXPECT_EQ(loaded[i].varFullName, "table." + std::string(names[i]));
             EXPECT_EQ(loaded[i].deviceType, (std::set<int>{1, 2}));
         }
     }},
    {"adding a variable",
     [](Attempt& attempt) {
         CVariableMapping mapping;
         mapping.AddMappingVar(kKey, kKey);
         const bool done = attempt.Succeeds([&] {
             mapping.AddMappingVar(kKey, kKey);
             EXPECT_EQ(mapping.GetAllMappedParsers().size(), 1u);
             const CVariableMapping copy(mapping);
         });
         const auto count = mapping.GetAllMapping().at(kKey).size();
         EXPECT_TRUE(count == 2 || (count == 1 && !done));
     }},
    {"adding variables, where those before stay",
     [](Attempt& attempt) {
         const std::vector<DDKey> added = Variables();
         CVariableMapping mapping;
         mapping.AddMappingVar(kKey, kKey);
         const bool done = attempt.Succeeds([&] { mapping.AddMappingVars(kKey, added); });
         const std::vector<DDKey>& vars = mapping.GetAllMapping().at(kKey);
         ASSERT_GE(vars.size(), 1u);
         if (done) {
             EXPECT_EQ(vars.size(), 1 + added.size());
         }
         EXPECT_TRUE(std::equal(vars.begin() + 1, vars.end(), added.begin(), SameKey));
     }},
    {"variables of a new key",
     [](Attempt& attempt) {
         const std::vector<DDKey> added = Variables();
         CVariableMapping mapping;
         const bool done = attempt.Succeeds([&] { mapping.AddMappingVars(kKey, added); });
         EXPECT_EQ(mapping.Size(), done ? 1u : 0u);
     }},
};

TEST(Memory, LoadsDocumentsAndMapsVariables) {
    for (const Operation& operation : kOperations) FailEveryAllocation(operation);
}

}  // namespace
