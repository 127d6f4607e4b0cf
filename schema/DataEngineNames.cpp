#include "schema/DataEngineNames.h"

// The priorities put the catalogue before every other initialiser of the library, group by group.
namespace DataEngineNames {
#define BLOCK_BEGIN(block) namespace block {
#define BLOCK_END(block) }
#define TEXT(id, text) __attribute__((init_priority(102))) const std::string id(text);
#include "schema/names/DataEngine.def"
}  // namespace DataEngineNames
