#include <VxUtil/vxJson.h>
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "variables/CTimePointIndex.h"
#include "variables/CVariableMapping.h"
#include "variables/ParserPriorityDAO.h"
#include "variables/VariableMappingDAO.h"

namespace {

using Pair = std::pair<std::string, std::string>;

Pair Texts(const DDKey& key) {
    return {key.GetParserPath(), key.GetVarFullName()};
}

TEST(Variables, OrderByIndicesThenPathThenName) {
    const std::vector<std::string> texts = {"", "a", "ab", "abc", "z", "\x80"};
    std::mt19937 random(6);
    const auto pick = [&] { return texts[random() % texts.size()]; };
    const auto index = [&] { return static_cast<int>(random() % 3) - 1; };
    for (int i = 0; i < 20000; ++i) {
        const Pair a(pick(), pick());
        const Pair b(pick(), pick());
        const DDKey left(a.first, a.second);
        const DDKey right(b.first, b.second);
        ASSERT_EQ(left < right, a < b);
        const auto at = std::make_tuple(index(), index(), a);
        const auto bt = std::make_tuple(index(), index(), b);
        ASSERT_EQ(CTimePointIndex(std::get<0>(at), std::get<1>(at), left) <
                      CTimePointIndex(std::get<0>(bt), std::get<1>(bt), right),
                  at < bt);
    }
}

TEST(Variables, AMoveIsACopy) {
    DDKey key("path", "name");
    CTimePointIndex point(1, 2, DDKey(std::move(key)));
    const CTimePointIndex moved(std::move(point));
    EXPECT_EQ(Texts(key), Pair("path", "name"));
    EXPECT_EQ(Texts(point.GetVar()), Pair("path", "name"));
    CVariableMapping mapping(std::map<DDKey, std::vector<DDKey>>{{key, {}}});
    const CVariableMapping other(std::move(mapping));
    EXPECT_EQ(mapping.Size(), 1u);
}

TEST(Variables, AMappingCollectsWhatIsAdded) {
    const DDKey g1("p1", "g");
    const DDKey g2("p0", "g");
    const DDKey v("p2", "v");
    const DDKey w("", "w");
    CVariableMapping mapping;
    mapping.AddMappingVars(g1, {});
    EXPECT_EQ(mapping.Size(), 1u);
    EXPECT_TRUE(mapping.GetAllMappedParsers().empty());

    mapping.AddMappingVar(g1, v);
    mapping.AddMappingVar(g1, v);
    mapping.AddMappingVars(g1, {w});
    mapping.AddMappingVars(g1, {});
    mapping.AddMappingVar(g2, v);
    // A mapping may be handed what it holds.
    mapping.AddMappingVars(g1, mapping.GetAllMapping().at(g1));
    mapping.AddMappingVar(g2, mapping.GetAllMapping().at(g2).front());

    std::map<Pair, std::vector<Pair>> texts;
    for (const auto& [key, vars] : mapping.GetAllMapping()) {
        for (const DDKey& var : vars) texts[Texts(key)].push_back(Texts(var));
    }
    const Pair a("p2", "v");
    const Pair b("", "w");
    EXPECT_EQ(texts, (std::map<Pair, std::vector<Pair>>{{Pair("p0", "g"), {a, a}},
                                                        {Pair("p1", "g"), {a, a, b, a, a, b}}}));
    EXPECT_EQ(mapping.Size(), 2u);
    EXPECT_EQ(mapping.GetAllMappedParsers(), (std::set<std::string>{"", "p2"}));

    CVariableMapping copy;
    copy.AddMappingVar(w, w);
    copy = mapping;
    mapping.Clear();
    EXPECT_EQ(mapping.Size(), 0u);
    EXPECT_EQ(copy.Size(), 2u);
}

TEST(Variables, NamesLoadInTheFormOfDecodedDocuments) {
    struct Row {
        int mappingType;
        const char *varName, *varFullName, *loadedName, *loadedFullName;
    };
    const Row rows[] = {
        // A single variable: a marked name replaces the full one.
        {0, "$hostName", "stored", "hostName", "hostName"},
        {1, "$hostName", "$stored", "hostName", "hostName"},
        {0, "$", "stored", "", ""},
        {1, "$$x", "", "$x", "$x"},
        // A table column: it replaces what follows the first ".$".
        {2, "$speed", "$ifTable.$speed", "speed", "ifTable.speed"},
        {2, "$speed", "ifTable.$other", "speed", "ifTable.speed"},
        {2, "$x", "$a.$b.$c", "x", "a.x"},
        {2, "$x", "$t", "x", "t"},
        {2, "$x", "$$t", "x", "$t"},
        {2, "$x", "$t.c", "x", "t.c"},
        {2, "$x", "", "x", ""},
        {2, "$x", ".$y", "x", ".x"},
        {2, "$", "$t.$c", "", "t."},
        {2, "$$x", ".$", "$x", ".$x"},
        // Any other type: the name alone.
        {7, "$x", "$t.$c", "x", "$t.$c"},
        {-1, "$x", "$t.$c", "x", "$t.$c"},
        // An unmarked name: neither.
        {0, "x", "$stored", "x", "$stored"},
        {2, "x", "$t.$c", "x", "$t.$c"},
        {2, "", "$t.$c", "", "$t.$c"},
    };
    for (const Row& row : rows) {
        vxJson::Value document;
        document["mappingType"] = row.mappingType;
        document["mappingVars"][0]["varName"] = row.varName;
        document["mappingVars"][0]["varFullName"] = row.varFullName;
        VariableMappingDAO mapping;
        mapping.LoadFromJson(document);
        EXPECT_EQ(mapping.GetMappingType(), row.mappingType);
        const MappingInstance loaded = mapping.GetAllMappingVariable().at(0);
        EXPECT_EQ(Pair(loaded.varName, loaded.varFullName),
                  Pair(row.loadedName, row.loadedFullName))
            << row.mappingType << " " << row.varName << " " << row.varFullName;
    }
}

TEST(Variables, AnInstanceThatDoesNotConvertIsLostAloneWithThoseBehindIt) {
    vxJson::Value document;
    document["gvPath"] = "g";
    document["mappingVars"][0]["parserPath"] = "p";
    document["mappingVars"][1]["deviceType"][0] = "x";
    document["mappingVars"][2]["parserPath"] = "q";
    VariableMappingDAO mapping;
    EXPECT_THROW(mapping.LoadFromJson(document), vxJson::Error);
    EXPECT_EQ(mapping.GetGvPath(), "g");
    ASSERT_EQ(mapping.GetMappingSize(), 1);
    EXPECT_EQ(mapping.GetAllMappingVariable()[0].parserPath, "p");
}

TEST(Variables, ADefaultPriorityIsTheLast) {
    ParserPriorityDAO priority;
    EXPECT_EQ(priority.GetTimeStamp(), 0);
    EXPECT_EQ(priority.GetOrder(), 0xFFFFFFFFu);
    vxJson::Value wide;
    wide["ts"] = 4294967296LL;  // the time stamp is read as 32 bits, though it holds 64
    EXPECT_THROW(priority.LoadFromJson(wide), vxJson::Error);
}

}  // namespace
