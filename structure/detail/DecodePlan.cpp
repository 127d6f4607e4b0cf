#include "structure/detail/DecodePlan.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <utility>

#include "structure/detail/MsgpackErrors.h"

namespace dataengine::detail {

/// Records the reports of a SelectionWalk.
class DecodePlan::Recorder {
  public:
    static constexpr bool kTablesByName = true;

    explicit Recorder(std::vector<Step>& steps) : steps_(steps) {}

    void Items(std::size_t most) { AddNumber(Kind::kItems, most); }
    void Found(std::string_view name) { name_ = name; }
    void Leaf(const ItemHead& head) { AddItem(Kind::kLeaf, head); }
    void BeginTable(const ItemHead& head) {
        AddItem(Kind::kBeginTable, head);
        table_ = head.name;
        name_.clear();
    }
    void Columns(std::size_t most) { AddNumber(Kind::kColumns, most); }
    void Attributes(std::size_t most) { AddNumber(Kind::kAttributes, most); }
    void Child(const ItemHead& head) { AddItem(Kind::kChild, head); }
    void EndChildren() { name_.clear(); }
    void HashSort(bool value) { AddNumber(Kind::kHashSort, value ? 1 : 0); }
    void HashColumns(std::string text) {
        steps_.push_back({Kind::kHashColumns});
        steps_.back().text = std::move(text);
    }
    void EndTable() {
        AddNumber(Kind::kEndTable, 0);
        table_.clear();
    }

    /// Returns the name of the item that the walk read last, or of the table and its child.
    std::string Path() const {
        return table_.empty() || name_.empty() ? table_ + name_ : table_ + '.' + name_;
    }

  private:
    void AddNumber(Kind kind, std::size_t number) { steps_.push_back({kind, number}); }
    void AddItem(Kind kind, const ItemHead& head) {
        steps_.push_back({kind, 0, std::string(head.name), head, ItemCells(head)});
    }

    std::vector<Step>& steps_;
    std::string table_;  // empty outside of a table
    std::string name_;
};

DecodePlan::DecodePlan(const vxJson::Value& schema, const vxJson::Value& selection) {
    if (!schema.isArray()) return;
    Recorder recorder(steps_);
    fits_ = true;
    try {
        fits_ = SelectionWalk(schema, recorder).Run(selection);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const Error& error) {
        failure_ = std::make_exception_ptr(Error(recorder.Path() + ": " + error.what()));
    } catch (...) {
        failure_ = std::current_exception();
    }
    for (Step& step : steps_) step.head.name = step.text;
}

bool DecodePlan::Run(DocumentBuilder& builder) const {
    if (!fits_) return false;
    ReportAll(steps_.begin(), steps_.end(), builder);
    if (failure_) std::rethrow_exception(failure_);
    return true;
}

bool DecodePlan::RunTable(std::string_view name, TableBuilder& builder) const {
    const auto isEnd = [](const Step& step) { return step.kind == Kind::kEndTable; };
    const auto begin = std::find_if(steps_.begin(), steps_.end(), [name](const Step& step) {
        return step.kind == Kind::kBeginTable && step.text == name;
    });
    const auto end = std::find_if(begin, steps_.end(), isEnd);
    if (end == steps_.end()) {  // the table is missing, or it could not be planned to its end
        if (failure_ != nullptr) std::rethrow_exception(failure_);
        return false;
    }
    builder.Items(1);
    ReportAll(begin, std::next(end), builder);
    return true;
}

template <typename Builder>
void DecodePlan::ReportAll(Position first, Position end, Builder& builder) {
    try {
        for (; first != end; ++first) Report(*first, builder);
    } catch (const msgpack::unpack_error&) {
        throw;
    } catch (const Error& error) {
        throw Error(builder.Path() + ": " + error.what());
    }
}

template <typename Builder>
void DecodePlan::Report(const Step& step, Builder& builder) {
    switch (step.kind) {
        case Kind::kItems:
            return builder.Items(step.number);
        case Kind::kLeaf:
            return builder.Leaf(step.head, step.cells);
        case Kind::kBeginTable:
            return builder.BeginTable(step.head, step.cells);
        case Kind::kColumns:
            return builder.Columns(step.number);
        case Kind::kAttributes:
            return builder.Attributes(step.number);
        case Kind::kChild:
            return builder.Child(step.head, step.cells);
        case Kind::kHashSort:
            return builder.HashSort(step.number != 0);
        case Kind::kHashColumns:
            return builder.HashColumns(step.text);
        case Kind::kEndTable:
            return builder.EndTable();
    }
}

}  // namespace dataengine::detail
