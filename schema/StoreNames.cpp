#include "schema/StoreNames.h"

#include <iterator>

#include "schema/detail/NameArray.h"

namespace {

constexpr bool rows[] = {
#define TEXT(id, text) true,
#include "schema/names/Store.def"
};

class Names : public NameArray<std::size(rows)> {
  public:
    Names() {
#define BLOCK_BEGIN(block) \
    {                      \
        namespace in_block = StoreNames::block;
#define BLOCK_END(block) }
#define TEXT(id, text) add(text);
#define COPY(id, model) add(in_block::model);
#include "schema/names/Store.def"
    }
};

// The priority builds the names before any other initialiser of the library runs, group by group.
__attribute__((init_priority(103))) Names names;

constexpr int first_row = __COUNTER__ + 1;

}  // namespace

// Binding a name to its string needs no code at load: the linker has done it.
namespace StoreNames {
#define BLOCK_BEGIN(block) namespace block {
#define BLOCK_END(block) }
#define TEXT(id, text) const std::string& id = names.strings[__COUNTER__ - first_row];
#include "schema/names/Store.def"
}  // namespace StoreNames
