#pragma once

#include <VxUtil/vxJson.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "contracts/detail/JsonValues.h"
#include "structure/detail/ItemList.h"
#include "structure/detail/PackedFormat.h"

namespace dataengine::detail {

/// Walks the items that a selection finds in a schema, and reports them in the order of the
/// selection. The handler is a class with these members:
///
///   static constexpr bool kTablesByName   whether a plain name may select a table, as a whole
///   void Items(std::size_t most)          at most as many items follow
///   void Found(std::string_view name)     the type and index of an item or child are read next
///   void Leaf(const ItemHead&)
///   void BeginTable(const ItemHead&)      its columns, flags and attributes follow
///   void Columns(std::size_t most), Attributes(std::size_t most)
///                                         at most as many children follow
///   void Child(const ItemHead&)           one of type 11 has no value: tables do not nest
///   void EndChildren()
///   void HashSort(bool), HashColumns(const std::string& text)
///   void EndTable()
///
/// Schema and selection are read step by step between the reports, in the order in which decoding
/// needs them, and a conversion that fails throws at its step.
template <typename Handler>
class SelectionWalk {
  public:
    /// The schema must be an array.
    SelectionWalk(const vxJson::Value& schema, Handler& handler)
        : handler_(handler), items_(schema) {}

    /// Walks the items of `fields`, or all items if it is null. Returns false without a report if
    /// `fields` is neither null nor an array, and if it is null and no item of the schema has a
    /// name.
    bool Run(const vxJson::Value& fields) {
        const bool all = fields.isNull();
        if (all ? !HasName() : !fields.isArray()) return false;
        if (all) {
            AllItems();
        } else {
            SelectedItems(fields);
        }
        return true;
    }

  private:
    bool HasName() const {
        for (std::uint32_t i = 0; i != items_.Size(); ++i) {
            if (items_[i]["name"].isString()) return true;
        }
        return false;
    }

    void SelectedItems(const vxJson::Value& fields) {
        const std::uint32_t count = fields.size();
        handler_.Items(count);
        for (std::uint32_t i = 0; i != count; ++i) {
            const vxJson::Value& entry = fields[static_cast<int>(i)];
            const std::string name =
                entry.isObject() ? entry["table"].asString() : entry.asString();
            const std::string_view wanted = WithoutMark(name);
            const auto found = count == 1 ? items_.FindOnce(wanted) : items_.Find(wanted);
            if (!found) continue;
            handler_.Found(wanted);
            const bool byName = Handler::kTablesByName && entry.isString();
            Item(items_[*found], items_.HeadOf(*found, wanted), byName ? null_ : entry);
        }
    }

    void AllItems() {
        handler_.Items(items_.Size());
        items_.ReadAll();
        for (std::uint32_t i = 0; i != items_.Size(); ++i) {
            const std::optional<std::string_view> name = items_.OwnName(i);
            if (!name) continue;
            const std::string_view wanted = WithoutMark(*name);
            const auto found = HasMark(*name) ? items_.Find(wanted) : items_.FindOwn(i, wanted);
            if (!found) continue;
            handler_.Found(wanted);
            const ItemHead head = items_.HeadOf(*found, wanted);
            if (head.type != kTableType) {
                handler_.Leaf(head);
                continue;
            }
            // An item without columns is selected by its name only.
            const vxJson::Value& own = items_[i];
            Item(items_[*found], head, own["column"].isArray() ? null_ : own["name"]);
        }
    }

    void Item(const vxJson::Value& item, const ItemHead& head, const vxJson::Value& entry) {
        if (head.type != kTableType) {
            handler_.Leaf(head);
        } else if (entry.isObject() || entry.isNull()) {
            Table(item, head, entry["column"], entry["attributes"]);
        } else {
            // A table selected by name only: operator[] of the entry decides, and may throw.
            vxJson::Value copy(entry);
            const vxJson::Value column = copy["column"];
            const vxJson::Value attributes = copy["attributes"];
            Table(item, head, column, attributes);
        }
    }

    void Table(const vxJson::Value& item, const ItemHead& head, const vxJson::Value& column,
               const vxJson::Value& attributes) {
        handler_.BeginTable(head);
        handler_.Columns(CountOf(column, item["column"]));
        Children(column, item["column"]);
        handler_.HashSort(item["hashSort"].asBool());
        handler_.HashColumns(item["hashColumns"].toString(false));
        handler_.Attributes(CountOf(attributes, item["attributes"]));
        Children(attributes, item["attributes"]);
        handler_.EndTable();
    }

    static std::size_t CountOf(const vxJson::Value& selection, const vxJson::Value& children) {
        const vxJson::Value& names = selection.isNull() ? children : selection;
        return names.isArray() ? names.size() : 0;
    }

    void Children(const vxJson::Value& selection, const vxJson::Value& list) {
        ItemList children(list);
        if (selection.isNull()) {
            AllChildren(children);
        } else {
            SelectedChildren(selection, children);
        }
        handler_.EndChildren();
    }

    void SelectedChildren(const vxJson::Value& selection, ItemList& children) {
        if (!selection.isArray()) return;
        const std::uint32_t count = selection.size();
        for (std::uint32_t i = 0; i != count; ++i) {
            const std::string name = selection[static_cast<int>(i)].asString();
            const auto found = count == 1 ? children.FindOnce(name) : children.Find(name);
            if (!found) continue;
            handler_.Found(name);
            handler_.Child(children.HeadOf(*found, name));
        }
    }

    void AllChildren(ItemList& children) {
        children.ReadAll();
        for (std::uint32_t i = 0; i != children.Size(); ++i) {
            const std::optional<std::string_view> name = children.OwnName(i);
            if (!name) continue;
            const auto found = children.FindOwn(i, *name);
            if (!found) continue;
            handler_.Found(*name);
            handler_.Child(children.HeadOf(*found, *name));
        }
    }

    Handler& handler_;
    ItemList items_;
    const vxJson::Value null_ = NullValue();  // selects a table as a whole
};

}  // namespace dataengine::detail
