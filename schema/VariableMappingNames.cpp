#include "schema/VariableMappingNames.h"

#include <iterator>

#include "schema/detail/NameArray.h"

namespace {

constexpr bool rows[] = {
#define TEXT(id, text) true,
#include "schema/names/VariableMapping.def"
};

class Names : public NameArray<std::size(rows)> {
  public:
    Names() {
#define TEXT(id, text) add(text);
#include "schema/names/VariableMapping.def"
    }
};

// The priority builds the names before any other initialiser of the library runs, group by group.
__attribute__((init_priority(101))) Names names;

constexpr int first_row = __COUNTER__ + 1;

}  // namespace

// Binding a name to its string needs no code at load: the linker has done it.
namespace VariableMappingNames {
#define TEXT(id, text) const std::string& id = names.strings[__COUNTER__ - first_row];
#include "schema/names/VariableMapping.def"
}  // namespace VariableMappingNames
