// Prints every name of the catalogue: group, qualified name and text, one row per line.

#include <iostream>
#include <string>
#include <string_view>

#include "schema/DataEngineNames.h"
#include "schema/StoreNames.h"
#include "schema/VariableMappingNames.h"

namespace {

class Listing {
  public:
    explicit Listing(std::string_view wanted) : wanted_(wanted) {}

    void row(std::string_view group, const std::string& name, const std::string& text) const {
        if (contains(name) || contains(text)) {
            std::cout << group << '\t' << name << '\t' << text << '\n';
        }
    }

  private:
    bool contains(std::string_view text) const { return text.find(wanted_) != text.npos; }

    std::string_view wanted_;
};

void list_variable_mapping(const Listing& listing) {
#define TEXT(id, text) \
    listing.row("variable-mapping", "VariableMappingNames::" #id, VariableMappingNames::id);
#include "schema/names/VariableMapping.def"
}

void list_data_engine(const Listing& listing) {
#define BLOCK_BEGIN(block)                           \
    {                                                \
        namespace in_block = DataEngineNames::block; \
        const std::string prefix = "DataEngineNames::" #block "::";
#define BLOCK_END(block) }
#define TEXT(id, text) listing.row("data-engine", prefix + #id, in_block::id);
#include "schema/names/DataEngine.def"
}

void list_store(const Listing& listing) {
#define BLOCK_BEGIN(block)                      \
    {                                           \
        namespace in_block = StoreNames::block; \
        const std::string prefix = "StoreNames::" #block "::";
#define BLOCK_END(block) }
#define TEXT(id, text) listing.row("store", prefix + #id, in_block::id);
#include "schema/names/Store.def"
}

constexpr std::string_view usage =
    "usage: list_catalogue [TEXT]\n"
    "Prints group, qualified name and text of every name in the catalogue, in order and\n"
    "tab-separated; with TEXT only those whose name or text contains it.\n";

}  // namespace

int main(int argc, char** argv) {
    const std::string_view wanted = argc > 1 ? argv[1] : "";
    if (wanted == "--help") {
        std::cout << usage;
        return 0;
    }
    if (argc > 2) {
        std::cerr << usage;
        return 2;
    }
    const Listing listing(wanted);
    list_variable_mapping(listing);
    list_data_engine(listing);
    list_store(listing);
    return std::cout.flush() ? 0 : 1;
}
