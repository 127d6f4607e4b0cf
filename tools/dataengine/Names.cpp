// Lists the catalogue: group, qualified name and text of every constant, in definition order.
#include <string>

#include "schema/DataEngineNames.h"
#include "schema/StoreNames.h"
#include "schema/VariableMappingNames.h"
#include "tools/dataengine/Commands.h"
#include "tools/dataengine/Files.h"

namespace tool {
namespace {

class Listing {
  public:
    explicit Listing(const std::string& wanted) : wanted_(wanted) {}

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
    if (name.find(wanted_) == name.npos && text.find(wanted_) == text.npos) return;
    rows_.append(group).append("\t").append(name).append("\t").append(text).append("\n");
}

}  // namespace

int Names(const NamesOptions& options) {
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

    WriteFiles({{options.output, listing.Rows()}});
    return 0;
}

}  // namespace tool
