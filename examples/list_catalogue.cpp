// Prints every name of the catalogue: group, qualified name and text, one row per line.
#include <string_view>

#include "examples/Example.h"
#include "schema/DataEngineNames.h"
#include "schema/StoreNames.h"
#include "schema/VariableMappingNames.h"

namespace {

const char usage[] = R"(usage: list_catalogue [TEXT]

Prints group, qualified name and text of every name in the catalogue, in order and tab-separated.
  TEXT   only the names that hold it, or whose text does
)";

class Listing {
  public:
    explicit Listing(const std::string& wanted) : wanted_(wanted) {}

    void row(std::string_view group, const std::string& name, const std::string& text) {
        if (contains(name) || contains(text))
            rows_ << group << '\t' << name << '\t' << text << '\n';
    }

    std::string rows() const { return rows_.str(); }

  private:
    bool contains(std::string_view text) const { return text.find(wanted_) != text.npos; }

    std::string wanted_;
    std::ostringstream rows_;
};

void listVariableMapping(Listing& listing) {
#define TEXT(id, text) \
    listing.row("variable-mapping", "VariableMappingNames::" #id, VariableMappingNames::id);
#include "schema/names/VariableMapping.def"
}

void listDataEngine(Listing& listing) {
#define BLOCK_BEGIN(block)                           \
    {                                                \
        namespace in_block = DataEngineNames::block; \
        const std::string prefix = "DataEngineNames::" #block "::";
#define BLOCK_END(block) }
#define TEXT(id, text) listing.row("data-engine", prefix + #id, in_block::id);
#include "schema/names/DataEngine.def"
}

void listStore(Listing& listing) {
#define BLOCK_BEGIN(block)                      \
    {                                           \
        namespace in_block = StoreNames::block; \
        const std::string prefix = "StoreNames::" #block "::";
#define BLOCK_END(block) }
#define TEXT(id, text) listing.row("store", prefix + #id, in_block::id);
#include "schema/names/Store.def"
}

std::string listCatalogue(const example::Arguments& arguments) {
    Listing listing(arguments.empty() ? "" : arguments[0]);
    listVariableMapping(listing);
    listDataEngine(listing);
    listStore(listing);
    return listing.rows();
}

}  // namespace

int main(int argc, char** argv) {
    return example::run(argc, argv, usage, 0, 1, listCatalogue);
}
