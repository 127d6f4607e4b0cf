#include "tools/dataengine/Selection.h"

#include <algorithm>
#include <map>

#include "tools/dataengine/Files.h"

namespace tool {
namespace {

std::string NameOf(const Item& item) {
    return (*item.schema)["name"].asString();
}

const Item* FindChild(const std::vector<Item>& items, const std::string& name) {
    const auto found = std::find_if(items.begin(), items.end(),
                                    [&](const Item& item) { return NameOf(item) == name; });
    return found == items.end() ? nullptr : &*found;
}

/// Replaces each item by the first of its name, which is the one that the decoder finds.
std::vector<Item> FirstOfEachName(std::vector<Item> items) {
    std::map<std::string, const vxJson::Value*> first;
    for (Item& item : items) item.schema = first.emplace(item.path, item.schema).first->second;
    return items;
}

SelectedItem Whole(const Item& item) {
    const vxJson::Value& schema = *item.schema;
    return {item, FirstOfEachName(ItemsOf(schema["column"], item.path + ".")),
            FirstOfEachName(ItemsOf(schema["attributes"], item.path + "."))};
}

/// Returns `name` without a leading '$'.
std::string WithoutMark(const std::string& name) {
    return name.empty() || name.front() != '$' ? name : name.substr(1);
}

class Selector {
  public:
    Selector(const Frame& frame, ErrorReporter& errors)
        : path_(DisplayName(frame.path)), errors_(errors) {
        for (Item& item : ItemsOf(frame.schema)) items_.emplace(item.path, item);
    }

    /// Adds the items that the decoder finds if everything is selected.
    void AddAll(const vxJson::Value& schema) {
        for (const Item& item : ItemsOf(schema)) {
            if (const Item* found = Find(WithoutMark(item.path)))
                selected_.push_back(Whole(*found));
        }
    }

    /// Adds the item, column or attribute of a name from the command line. Returns whether there is
    /// one.
    bool AddNamed(const std::string& name) {
        if (const Item* item = Find(name)) {
            selected_.push_back(Whole(*item));
            return true;
        }
        for (std::size_t dot = name.find('.'); dot != name.npos; dot = name.find('.', dot + 1)) {
            const Item* table = Find(name.substr(0, dot));
            if (table != nullptr && table->IsTable() && AddChild(*table, name.substr(dot + 1)))
                return true;
        }
        return false;
    }

    /// Adds the item that an entry of a JSON selection names.
    void AddEntry(const vxJson::Value& entry) {
        const vxJson::Value& text = entry.isObject() ? entry["table"] : entry;
        const std::string name = WithoutMark(text.asString());
        const Item* item = Find(name);
        if (item == nullptr) return ReportMissing(name);
        SelectedItem selected = Whole(*item);
        if (entry.isObject() && item->IsTable()) {
            Keep(selected.columns, entry["column"]);
            Keep(selected.attributes, entry["attributes"]);
        }
        selected_.push_back(std::move(selected));
    }

    void ReportMissing(const std::string& name) {
        errors_.Report(path_ + ": has no item named \"" + name + "\"");
    }
    std::vector<SelectedItem> Take() { return std::move(selected_); }

  private:
    const Item* Find(const std::string& name) const {
        const auto found = items_.find(name);
        return found == items_.end() ? nullptr : &found->second;
    }

    /// Adds a column or an attribute, to the last selected item if that is its table.
    bool AddChild(const Item& table, const std::string& name) {
        SelectedItem whole = Whole(table);
        const Item* column = FindChild(whole.columns, name);
        const Item* attribute = column == nullptr ? FindChild(whole.attributes, name) : nullptr;
        if (column == nullptr && attribute == nullptr) return false;
        if (selected_.empty() || selected_.back().item.schema != table.schema)
            selected_.push_back({table, {}, {}});
        if (column != nullptr) selected_.back().columns.push_back(*column);
        if (attribute != nullptr) selected_.back().attributes.push_back(*attribute);
        return true;
    }

    /// Replaces `children` by those that `names` lists; keeps all if it is null.
    void Keep(std::vector<Item>& children, const vxJson::Value& names) {
        if (names.isNull()) return;
        std::vector<Item> kept;
        for (const vxJson::Value& entry : names) {
            const std::string name = entry.asString();
            const Item* child = FindChild(children, name);
            if (child == nullptr) {
                ReportMissing(name);
            } else {
                kept.push_back(*child);
            }
        }
        children = std::move(kept);
    }

    std::string path_;
    std::map<std::string, Item> items_;  // the first of each name
    ErrorReporter& errors_;
    std::vector<SelectedItem> selected_;
};

void AddFile(Selector& selector, const Frame& frame, const std::string& path) {
    const vxJson::Value fields = ReadJson(path);
    if (fields.isNull()) return selector.AddAll(frame.schema);
    if (!fields.isArray()) throw Failure(path, "is neither an array nor null");
    try {
        for (const vxJson::Value& entry : fields) selector.AddEntry(entry);
    } catch (const vxJson::Error& error) {
        throw Failure(path, std::string("is not a selection (") + error.what() + ")");
    }
}

}  // namespace

std::vector<SelectedItem> Select(const Frame& frame, const std::vector<std::string>& select,
                                 ErrorReporter& errors) {
    Selector selector(frame, errors);
    if (select.empty()) selector.AddAll(frame.schema);
    for (const std::string& name : select) {
        if (selector.AddNamed(name)) continue;
        if (select.size() == 1 && IsFile(name)) {
            AddFile(selector, frame, name);
        } else {
            selector.ReportMissing(name);
        }
    }
    return selector.Take();
}

}  // namespace tool
