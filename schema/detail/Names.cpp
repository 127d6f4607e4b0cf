#include <cstddef>
#include <iterator>
#include <string>

#include "schema/DataEngineNames.h"
#include "schema/StoreNames.h"
#include "schema/VariableMappingNames.h"
#include "schema/detail/Copies.h"

// Each constant is a reference that the linker binds to its string in one array, and the array is
// filled from a table of texts. An object for each constant took four times as long to load (0.65
// against 0.16 ms), because the dynamic linker looked each of them up by name, and a minute to
// compile instead of half a second.

namespace {

using dataengine::detail::CatalogueRow;

// The rows of all groups, in definition order.
constexpr CatalogueRow kRows[] = {
#define TEXT(id, text) {#id, text},
#include "schema/names/VariableMapping.def"
#define TEXT(id, text) {#id, text},
#include "schema/names/DataEngine.def"
#define TEXT(id, text) {#id, text},
#define COPY(id, model) {#model, nullptr},
#include "schema/names/Store.def"
};

constexpr auto kTexts = dataengine::detail::TextsOf(kRows);

struct Names {
    Names() {
        for (std::size_t i = 0; i < std::size(kTexts); ++i) strings[i] = kTexts[i];
    }

    std::string strings[std::size(kTexts)];
};

// With this priority the strings are built before any other initializer of the library runs, or of
// a program that links it statically.
__attribute__((init_priority(101))) Names names;

constexpr int kFirstRow = __COUNTER__ + 1;

}  // namespace

namespace VariableMappingNames {
#define TEXT(id, text) const std::string& id = names.strings[__COUNTER__ - kFirstRow];
#include "schema/names/VariableMapping.def"
}  // namespace VariableMappingNames

namespace DataEngineNames {
#define BLOCK_BEGIN(block) namespace block {
#define BLOCK_END(block) }
#define TEXT(id, text) const std::string& id = names.strings[__COUNTER__ - kFirstRow];
#include "schema/names/DataEngine.def"
}  // namespace DataEngineNames

namespace StoreNames {
#define BLOCK_BEGIN(block) namespace block {
#define BLOCK_END(block) }
#define TEXT(id, text) const std::string& id = names.strings[__COUNTER__ - kFirstRow];
#include "schema/names/Store.def"
}  // namespace StoreNames
