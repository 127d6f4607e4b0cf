#pragma once

#include <array>
#include <cstddef>
#include <stdexcept>
#include <string_view>

namespace dataengine::detail {

/// A row of the catalogue: its identifier and text; of a copy, its model's identifier and null.
struct CatalogueRow {
    const char* id;
    const char* text;
};

/// Returns the texts of the rows. A copy has the text of the last row before it with its
/// identifier. If there is none, the call is not a constant expression.
template <std::size_t count>
constexpr std::array<const char*, count> TextsOf(const CatalogueRow (&rows)[count]) {
    std::array<const char*, count> texts{};
    for (std::size_t i = 0; i < count; ++i) {
        std::size_t model = i;
        while (rows[model].text == nullptr || std::string_view(rows[model].id) != rows[i].id)
            if (model-- == 0) throw std::invalid_argument("a copy has no model");
        texts[i] = rows[model].text;
    }
    return texts;
}

}  // namespace dataengine::detail
