// Lists the catalogue: group, qualified name and text of every constant, in definition order.
#include <algorithm>

#include "schema/DataEngineNames.h"
#include "schema/StoreNames.h"
#include "schema/VariableMappingNames.h"
#include "tools/dataengine/Commands.h"

namespace dataengine::tool {
namespace {

bool Contains(const std::string& text, const std::string& part) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c; };
    const auto isEqual = [&](char a, char b) { return lower(a) == lower(b); };
    return std::search(text.begin(), text.end(), part.begin(), part.end(), isEqual) != text.end() ||
           part.empty();
}

struct Listing {
    const std::string& wanted;
    std::string rows;

    // Not inlined, and called without temporary strings: the 1,787 calls would otherwise take a
    // minute to compile.
    [[gnu::noinline]] void Add(const char* group, const char* prefix, const char* id,
                               const std::string& text) {
        const std::string name = std::string(prefix) + id;
        if (Contains(name, wanted) || Contains(text, wanted))
            rows.append(group).append("\t").append(name).append("\t").append(text).append("\n");
    }
};

}  // namespace

void Names(const Options& options, Output& output) {
    Listing listing{options.text, ""};

#define TEXT(id, text) \
    listing.Add("variable-mapping", "VariableMappingNames::", #id, VariableMappingNames::id);
#include "schema/names/VariableMapping.def"

#define BLOCK_BEGIN(block)                           \
    {                                                \
        namespace in_block = DataEngineNames::block; \
        const char* const prefix = "DataEngineNames::" #block "::";
#define BLOCK_END(block) }
#define TEXT(id, text) listing.Add("data-engine", prefix, #id, in_block::id);
#include "schema/names/DataEngine.def"

#define BLOCK_BEGIN(block)                      \
    {                                           \
        namespace in_block = StoreNames::block; \
        const char* const prefix = "StoreNames::" #block "::";
#define BLOCK_END(block) }
#define TEXT(id, text) listing.Add("store", prefix, #id, in_block::id);
#include "schema/names/Store.def"

    if (listing.rows.empty()) throw Failure("no name contains \"" + options.text + "\"");
    output.text += listing.rows;
}

}  // namespace dataengine::tool
