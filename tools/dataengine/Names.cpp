// Lists the catalogue: group, qualified name and text of every constant, in definition order.
#include <string>

#include "schema/DataEngineNames.h"
#include "schema/StoreNames.h"
#include "schema/VariableMappingNames.h"
#include "tools/dataengine/Commands.h"
#include "tools/dataengine/Failure.h"
#include "tools/dataengine/Files.h"

namespace dataengine::tool {
namespace {

std::string LowerCase(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return text;
}

class Listing {
  public:
    explicit Listing(const std::string& wanted) : wanted_(LowerCase(wanted)) {}

    void Add(const char* group, const char* prefix, const char* id, const std::string& text);
    const std::string& Rows() const { return rows_; }

  private:
    std::string wanted_;
    std::string rows_;
};

// Not inlined, and called without temporary strings: the 1,787 calls would otherwise take a minute
// to compile.
[[gnu::noinline]] void Listing::Add(const char* group, const char* prefix, const char* id,
                                    const std::string& text) {
    const std::string name = std::string(prefix) + id;
    if (LowerCase(name).find(wanted_) == name.npos && LowerCase(text).find(wanted_) == text.npos)
        return;
    rows_.append(group).append("\t").append(name).append("\t").append(text).append("\n");
}

}  // namespace

int Names(const Options& options) {
    Listing listing(options.text);

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

    if (listing.Rows().empty()) throw Failure("no name contains \"" + options.text + "\"");
    WriteFile(options.output, listing.Rows(), Content::kSafe);
    return 0;
}

}  // namespace dataengine::tool
