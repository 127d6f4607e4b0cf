#include <VxUtil/vxJson.h>
#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "tests/support/Rows.h"
#include "tests/support/Texts.h"
#include "tests/support/Transfer.h"
#include "variables/CTimePointIndex.h"
#include "variables/CVariableMapping.h"
#include "variables/ParserPriorityDAO.h"
#include "variables/VariableMappingDAO.h"

namespace {

std::string Text(const DDKey& key) {
    return key.GetParserPath() + "/" + key.GetVarFullName();
}

TEST(Variables, OrderByIndicesThenPathThenName) {
    const std::string texts[] = {"", "a", "ab", "abc", "z", "\x80"};
    std::mt19937 random(6);
    const auto index = [&] { return static_cast<int>(random() % 3) - 1; };
    const auto pick = [&] {
        return std::make_tuple(index(), index(), texts[random() % 6], texts[random() % 6]);
    };
    for (int i = 0; i < 20000; ++i) {
        const auto [d1, q1, p1, n1] = pick();
        const auto [d2, q2, p2, n2] = pick();
        const DDKey a(p1, n1);
        const DDKey b(p2, n2);
        ASSERT_EQ(a < b, std::tie(p1, n1) < std::tie(p2, n2));
        ASSERT_EQ(CTimePointIndex(d1, q1, a) < CTimePointIndex(d2, q2, b),
                  std::tie(d1, q1, p1, n1) < std::tie(d2, q2, p2, n2));
    }
}

TEST(Variables, AMoveIsACopy) {
    DDKey key("path", "name");
    CTimePointIndex point(1, 2, DDKey(std::move(key)));
    CVariableMapping mapping;
    mapping.AddMappingVar(key, CTimePointIndex(std::move(point)).GetVar());
    const CVariableMapping other(std::move(mapping));
    EXPECT_EQ(Text(key) + Text(point.GetVar()), "path/namepath/name");
    EXPECT_EQ(mapping.Size(), 1u);
}

TEST(Variables, AMappingCollectsWhatIsAdded) {
    const DDKey g0("p0", "g");
    const DDKey g1("p1", "g");
    const DDKey v("p2", "v");
    const DDKey w("", "w");
    CVariableMapping mapping;
    mapping.AddMappingVars(g1, {});
    EXPECT_EQ(mapping.Size(), 1u);
    mapping.AddMappingVar(g1, v);
    mapping.AddMappingVar(g1, v);
    mapping.AddMappingVars(g1, {w, v});
    mapping.AddMappingVars(g1, {});
    mapping.AddMappingVar(g0, v);
    // A mapping may be handed what it holds.
    mapping.AddMappingVars(g1, mapping.GetAllMapping().at(g1));
    mapping.AddMappingVar(g0, mapping.GetAllMapping().at(g0).front());

    std::string text;
    for (const auto& [key, vars] : mapping.GetAllMapping()) {
        text += Text(key) + ":";
        for (const DDKey& var : vars) text += " " + Text(var);
        text += "\n";
    }
    EXPECT_EQ(text, "p0/g: p2/v p2/v\np1/g: p2/v p2/v /w p2/v p2/v p2/v /w p2/v\n");
    EXPECT_EQ(mapping.GetAllMappedParsers(), (std::set<std::string>{"", "p2"}));
    mapping.Clear();
    EXPECT_EQ(mapping.Size(), 0u);
}

TEST(Variables, NamesLoadInTheFormOfDecodedDocuments) {
    // varName, varFullName | both as loaded | mapping type: 0 and 1 are single variables, where a
    // marked name replaces the full one; in 2, a table column, it replaces what follows the first
    // ".$"; of any other type the name alone is changed, and an unmarked name changes nothing.
    for (const auto& row : Rows(R"(
        $hostName | stored          | hostName | hostName      | 0
        $         | stored          |          |               | 0
        $$x       |                 | $x       | $x            | 1
        $speed    | $ifTable.$speed | speed    | ifTable.speed | 2
        $x        | a.$b.$c         | x        | a.x           | 2
        $x        | $t              | x        | t             | 2
        $x        | $$t.c           | x        | $t.c          | 2
        $x        |                 | x        |               | 2
        $$x       | .$              | $x       | .$x           | 2
        $x        | $t.$c           | x        | $t.$c         | 7
        x         | $stored         | x        | $stored       | 0
                  | $t.$c           |          | $t.$c         | 2
    )")) {
        vxJson::Value document;
        document["mappingType"] = std::stoi(row.at(4));
        document["mappingVars"][0]["varName"] = row[0];
        document["mappingVars"][0]["varFullName"] = row[1];
        VariableMappingDAO mapping;
        mapping.LoadFromJson(document);
        const MappingInstance loaded = mapping.GetAllMappingVariable().at(0);
        EXPECT_EQ(std::tie(loaded.varName, loaded.varFullName), std::tie(row[2], row[3]))
            << row[0] << " " << row[1] << " " << row[4];
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

TEST(Variables, AnInstanceThatDoesNotConvertIsLostWithThoseAfterIt) {
    VariableMappingDAO mapping;
    EXPECT_THROW(mapping.LoadFromJson(
                     Json(R"({"mappingVars":[{"parserPath":"p"},{"deviceType":["x"]},{}]})")),
                 vxJson::Error);
    ASSERT_EQ(mapping.GetMappingSize(), 1);
    EXPECT_EQ(mapping.GetAllMappingVariable()[0].parserPath, "p");
}

}  // namespace
