#pragma once

#include <VxUtil/vxJson.h>

#include <cstddef>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "structure/detail/DocumentBuilder.h"
#include "structure/detail/SelectionWalk.h"
#include "structure/detail/TableBuilder.h"

namespace dataengine::detail {

/// What a selection comes to in one schema, worked out once: the reports of a SelectionWalk, and
/// the exception that ended it, if any. It refers neither to the schema nor to the selection.
class DecodePlan {
  public:
    /// A plan that decodes nothing.
    DecodePlan() = default;

    /// Throws std::bad_alloc only; other exceptions are for Run.
    DecodePlan(const vxJson::Value& schema, const vxJson::Value& selection);

    /// Builds the document of the selection. Returns false without a call of the builder if the
    /// selection does not fit the schema. Throws what the walk would have thrown, after the items
    /// before it.
    bool Run(DocumentBuilder& builder) const;

    /// Builds the first table of this name. Returns false without a call of the builder if the
    /// selection has none. Throws as Run does, but not for other items.
    bool RunTable(std::string_view name, TableBuilder& builder) const;

  private:
    class Recorder;

    enum class Kind : unsigned char {
        kItems,
        kLeaf,
        kBeginTable,
        kColumns,
        kAttributes,
        kChild,
        kHashSort,
        kHashColumns,
        kEndTable
    };

    /// A report: a most number of items, a flag, the text of "hashColumns" or an item.
    struct Step {
        Kind kind;
        std::size_t number = 0;
        std::string text = {};
        ItemHead head = {};  // its name is `text`
        ItemCells cells = ItemCells({});
    };

    using Position = std::vector<Step>::const_iterator;

    template <typename Builder>
    static void Report(const Step& step, Builder& builder);
    template <typename Builder>
    static void ReportAll(Position first, Position end, Builder& builder);

    bool fits_ = false;
    std::vector<Step> steps_;
    std::exception_ptr failure_;
};

}  // namespace dataengine::detail
