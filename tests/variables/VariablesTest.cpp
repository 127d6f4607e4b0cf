#include <VxUtil/vxJson.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <type_traits>

#include "tests/support/Rows.h"
#include "tests/support/Texts.h"
#include "tests/support/Transfer.h"
#include "variables/CTimePointIndex.h"
#include "variables/CVariableMapping.h"
#include "variables/ParserPriorityDAO.h"
#include "variables/VariableMappingDAO.h"

namespace {

// A move is a copy, which may throw.
template <typename... T>
constexpr bool kMoveByCopy = !(std::is_nothrow_move_constructible_v<T> || ...);
static_assert(kMoveByCopy<DDKey, CTimePointIndex, CVariableMapping, VariableMappingDAO>);

std::string Text(const DDKey& key) {
    return key.GetParserPath() + "/" + key.GetVarFullName();
}

TEST(Variables, OrderByIndicesThenPathThenName) {
    const auto ascending = RowsOf(TEST_DATA "/ascending.txt");
    const auto point = [&](std::size_t i) {
        const auto& row = ascending[i];
        return CTimePointIndex(std::stoi(row[0]), std::stoi(row[1]), DDKey(row[2], row.at(3)));
    };
    for (std::size_t i = 0; i < ascending.size(); ++i) {
        for (std::size_t j = 0; j < ascending.size(); ++j) {
            EXPECT_EQ(point(i) < point(j), i < j) << i << " " << j;
        }
    }
}

TEST(Variables, AMappingCollectsWhatIsAdded) {
    const DDKey g("p1", "g");
    const DDKey v("p2", "v");
    CVariableMapping mapping;
    mapping.AddMappingVars(g, {});
    EXPECT_EQ(mapping.Size(), 1u);
    mapping.AddMappingVar(g, v);
    mapping.AddMappingVars(g, {DDKey("", "w"), v});
    mapping.AddMappingVar(v, v);
    // A mapping may be given what it holds.
    mapping.AddMappingVars(g, mapping.GetAllMapping().at(g));
    mapping.AddMappingVar(v, mapping.GetAllMapping().at(v).front());

    vxJson::Value shown;
    for (const auto& [key, vars] : mapping.GetAllMapping()) {
        for (const DDKey& var : vars) shown[Text(key)].append(Text(var));
    }
    EXPECT_EQ(shown, Json(R"({"p1/g":["p2/v","/w","p2/v","p2/v","/w","p2/v"],
                              "p2/v":["p2/v","p2/v"]})"));
    EXPECT_EQ(mapping.GetAllMappedParsers(), (std::set<std::string>{"", "p2"}));
    mapping.Clear();
    EXPECT_EQ(mapping.Size(), 0u);
}

TEST(Variables, NamesLoadInTheFormOfDecodedDocuments) {
    for (const auto& row : RowsOf(TEST_DATA "/names.txt")) {
        SCOPED_TRACE(row[0] + " " + row[1]);
        vxJson::Value document;
        document["mappingType"] = std::stoi(row.at(4));
        document["mappingVars"][0]["varName"] = row[0];
        document["mappingVars"][0]["varFullName"] = row[1];
        VariableMappingDAO mapping;
        mapping.LoadFromJson(document);
        EXPECT_EQ(mapping.GetAllMappingVariable().at(0).varName, row[2]);
        EXPECT_EQ(mapping.GetAllMappingVariable().at(0).varFullName, row[3]);
    }
}

vxJson::Value ShowInstances(const VariableMappingDAO& mapping) {
    vxJson::Value list;
    for (const MappingInstance& o : mapping.GetAllMappingVariable()) {
        vxJson::Value types;
        for (const int type : o.deviceType) types.append(type);
        list.append(Object("deviceType", types, "parserPath", o.parserPath, "parserName",
                           o.parserName, "bizType", o.bizType, "varName", o.varName, "varFullName",
                           o.varFullName));
    }
    return list;
}

TEST(Variables, DocumentsLoadAndMove) {
    Transfer<VariableMappingDAO>::Check("VariableMappingDAO", [](const auto& o) {
        return Object("_id", o.GetId(), "mappingType", int{o.GetMappingType()}, "gvPath",
                      o.GetGvPath(), "mappingVars", ShowInstances(o));
    });
    Transfer<ParserPriorityDAO>::Check("ParserPriorityDAO", [](const auto& o) {
        return Object("devType", o.GetDevType(), "path", o.GetParserPath(), "ts", o.GetTimeStamp(),
                      "order", o.GetOrder());
    });
    EXPECT_EQ(ParserPriorityDAO().GetOrder(), 0xFFFFFFFF);
}

}  // namespace
