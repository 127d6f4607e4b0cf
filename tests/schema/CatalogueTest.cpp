#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "schema/DataEngineNames.h"
#include "schema/StoreNames.h"
#include "schema/VariableMappingNames.h"

namespace {

// Copied while this program is loaded: the names are there before anybody's static objects.
const std::string copied_at_load = StoreNames::Collection::ObjectTreeNodeDataCache_files;

// The rows of a group in order: block, name and text.
using Rows = std::vector<std::string>;

// Out of line and without temporaries, for a compiler that sees it called 1,708 times in a row.
void add(Rows& rows, const char* prefix, const char* id, const std::string& text);

Rows variable_mapping_rows() {
    Rows rows;
#define TEXT(id, text) add(rows, "", #id, VariableMappingNames::id);
#include "schema/names/VariableMapping.def"
    return rows;
}

Rows data_engine_rows() {
    Rows rows;
#define BLOCK_BEGIN(block)                           \
    {                                                \
        namespace in_block = DataEngineNames::block; \
        const char* const prefix = #block "::";
#define BLOCK_END(block) }
#define TEXT(id, text) add(rows, prefix, #id, in_block::id);
#include "schema/names/DataEngine.def"
    return rows;
}

Rows store_rows() {
    Rows rows;
#define BLOCK_BEGIN(block)                      \
    {                                           \
        namespace in_block = StoreNames::block; \
        const char* const prefix = #block "::";
#define BLOCK_END(block) }
#define TEXT(id, text) add(rows, prefix, #id, in_block::id);
#include "schema/names/Store.def"
    return rows;
}

[[gnu::noinline]] void add(Rows& rows, const char* prefix, const char* id,
                           const std::string& text) {
    rows.push_back(std::string(prefix) + id + " is " + text);
}

// FNV-1a over the rows, each followed by a newline, in hexadecimal digits.
std::string fingerprint(const Rows& rows) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const std::string& row : rows) {
        for (const char c : row + '\n') {
            hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
        }
    }
    std::ostringstream digits;
    digits << std::hex << hash;
    return digits.str();
}

// What a stored document depends on. A new row changes the numbers of its group and nothing else;
// any other change of them breaks the stores in use.
TEST(Catalogue, HoldsEachGroupLetterForLetterInOrder) {
    const struct {
        const char* group;
        Rows rows;
        std::size_t count;
        const char* fingerprint;
    } groups[] = {
        {"variable mapping", variable_mapping_rows(), 26, "cd0cf340f48604f2"},
        {"data engine", data_engine_rows(), 53, "8d9c94ad2002b0bb"},
        {"store", store_rows(), 1708, "d4182565084822b9"},
    };
    for (const auto& group : groups) {
        EXPECT_EQ(group.rows.size(), group.count) << group.group;
        EXPECT_EQ(fingerprint(group.rows), group.fingerprint) << group.group;
    }
}

// The rows that are easily taken for one another: texts that stand twice, or differ in case alone.
TEST(Catalogue, GivesEachRowAStringOfItsOwn) {
    using namespace StoreNames;
    EXPECT_EQ(Operator::regex + Operator::REGEX, "$regex$REGEX");
    EXPECT_EQ(Collection::Parsers + Collection::parser + Collection::parser_2,
              "Parsersparserparser");
    EXPECT_EQ(TopoType::L3_Topo_Type_2 + TopoType::L2_Topo_Type_2, "L3_Topo_TypeL2_Topo_Type");
    EXPECT_NE(&TopoType::L3_Topo_Type, &TopoType::L3_Topo_Type_2);
    EXPECT_NE(&Device::vxPathSchema, &DeviceModule::vxPathSchema);
    EXPECT_NE(&VariableMappingNames::order, &VariableMappingNames::order_2);
}

TEST(Catalogue, IsThereBeforeStaticObjects) {
    EXPECT_EQ(copied_at_load, "ObjectTreeNodeDataCache.files");
}

}  // namespace
