#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "schema/DataEngineNames.h"
#include "schema/StoreNames.h"
#include "schema/VariableMappingNames.h"
#include "schema/detail/Copies.h"

namespace {

// The names are built before the static objects of a program, even of one that contains them.
const std::string copiedBeforeMain = StoreNames::Collection::ObjectTreeNodeDataCache_files;

// The rows of a group: their number, and FNV-1a over a line for each.
struct Rows {
    // Out of line, for a compiler that sees it called 1,708 times in a row.
    [[gnu::noinline]] void Add(const char* block, const char* id, const std::string& text) {
        ++count;
        for (const char c : std::string(block) + id + " is " + text + '\n') {
            hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
        }
    }

    std::size_t count = 0;
    std::uint64_t hash = 0xcbf29ce484222325;
};

Rows VariableMappingRows() {
    Rows rows;
#define TEXT(id, text) rows.Add("", #id, VariableMappingNames::id);
#include "schema/names/VariableMapping.def"
    return rows;
}

Rows DataEngineRows() {
    Rows rows;
#define BLOCK_BEGIN(block)                           \
    {                                                \
        namespace in_block = DataEngineNames::block; \
        const char* const prefix = #block "::";
#define BLOCK_END(block) }
#define TEXT(id, text) rows.Add(prefix, #id, in_block::id);
#include "schema/names/DataEngine.def"
    return rows;
}

Rows StoreRows() {
    Rows rows;
#define BLOCK_BEGIN(block)                      \
    {                                           \
        namespace in_block = StoreNames::block; \
        const char* const prefix = #block "::";
#define BLOCK_END(block) }
#define TEXT(id, text) rows.Add(prefix, #id, in_block::id);
#include "schema/names/Store.def"
    return rows;
}

// Stores depend on these names. A new row changes the numbers of its group and nothing else; any
// other change of them breaks the stores in use.
TEST(Catalogue, HoldsEachGroupLetterForLetterInOrder) {
    const struct {
        const char* group;
        Rows rows;
        std::size_t count;
        std::uint64_t hash;
    } groups[] = {
        {"variable mapping", VariableMappingRows(), 26, 0xcd0cf340f48604f2},
        {"data engine", DataEngineRows(), 53, 0x8d9c94ad2002b0bb},
        {"store", StoreRows(), 1708, 0xd4182565084822b9},
    };
    for (const auto& group : groups) {
        EXPECT_EQ(group.rows.count, group.count) << group.group;
        EXPECT_EQ(group.rows.hash, group.hash)
            << group.group << std::hex << ": 0x" << group.rows.hash;
    }
}

// Rows that are easily mistaken for one another: equal texts, or texts that differ in case only.
TEST(Catalogue, GivesEachRowAStringOfItsOwn) {
    using namespace StoreNames;
    EXPECT_EQ(Operator::regex, "$regex");
    EXPECT_EQ(Operator::REGEX, "$REGEX");
    EXPECT_EQ(Collection::Parsers, "Parsers");
    EXPECT_EQ(Collection::parser_2, "parser");
    EXPECT_EQ(TopoType::L3_Topo_Type_2, "L3_Topo_Type");
    EXPECT_NE(&TopoType::L3_Topo_Type, &TopoType::L3_Topo_Type_2);
    EXPECT_NE(&Device::vxPathSchema, &DeviceModule::vxPathSchema);
    EXPECT_NE(&VariableMappingNames::order, &VariableMappingNames::order_2);
}

constexpr dataengine::detail::CatalogueRow kRows[] = {{"a", "1"},     {"a", "2"},     {"b", "3"},
                                                      {"a", nullptr}, {"b", nullptr}, {"a", "4"}};
constexpr auto kTexts = dataengine::detail::TextsOf(kRows);
static_assert(*kTexts[2] == '3' && *kTexts[3] == '2' && *kTexts[4] == '3' && *kTexts[5] == '4');

TEST(Catalogue, IsBuiltBeforeStaticObjects) {
    EXPECT_EQ(copiedBeforeMain, "ObjectTreeNodeDataCache.files");
}

}  // namespace
