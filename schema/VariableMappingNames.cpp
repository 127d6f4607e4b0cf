#include "schema/VariableMappingNames.h"

// The priorities put the catalogue before every other initialiser of the library, group by group.
namespace VariableMappingNames {
#define TEXT(id, text) __attribute__((init_priority(101))) const std::string id(text);
#include "schema/names/VariableMapping.def"
}  // namespace VariableMappingNames
