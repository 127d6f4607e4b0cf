#include "tools/dataengine/Selection.h"

#include <algorithm>
#include <filesystem>

#include "tools/dataengine/Files.h"

namespace tool {
namespace {

std::string NameOf(const Item& item) {
    return (*item.schema)["name"].asString();
}

const Item* Find(const std::vector<Item>& items, const std::string& name) {
    const auto found = std::find_if(items.begin(), items.end(),
                                    [&](const Item& item) { return NameOf(item) == name; });
    return found == items.end() ? nullptr : &*found;
}

SelectedItem Whole(const Item& item) {
    const vxJson::Value& schema = *item.schema;
    return {item, ItemsOf(schema["column"], item.path + "."),
            ItemsOf(schema["attributes"], item.path + ".")};
}

class Selector {
  public:
    Selector(const Frame& frame, Complaints& complaints)
        : path_(Shown(frame.path)), items_(ItemsOf(frame.schema)), complaints_(complaints) {}

    void AddAll() {
        for (const Item& item : items_) selected_.push_back(Whole(item));
    }

    /// Adds what a name from the command line names. Returns false if it names nothing.
    bool AddNamed(const std::string& name) {
        if (const Item* item = Find(items_, name)) {
            selected_.push_back(Whole(*item));
            return true;
        }
        for (std::size_t dot = name.find('.'); dot != name.npos; dot = name.find('.', dot + 1)) {
            const Item* table = Find(items_, name.substr(0, dot));
            if (table != nullptr && table->IsTable() && AddChild(*table, name.substr(dot + 1)))
                return true;
        }
        return false;
    }

    /// Adds what an entry of a selection in JSON names.
    void AddEntry(const vxJson::Value& entry) {
        std::string name = entry.isObject() ? entry["table"].asString() : entry.asString();
        if (!name.empty() && name.front() == '$') name.erase(0, 1);
        const Item* item = Find(items_, name);
        if (item == nullptr) return Complain(name);
        SelectedItem selected = Whole(*item);
        if (entry.isObject() && item->IsTable()) {
            Keep(selected.columns, entry["column"]);
            Keep(selected.attributes, entry["attributes"]);
        }
        selected_.push_back(std::move(selected));
    }

    void Complain(const std::string& name) {
        complaints_.Add(path_ + ": has no item named \"" + name + "\"");
    }
    std::vector<SelectedItem> Take() { return std::move(selected_); }

  private:
    /// Adds a column or an attribute to the selection of its table made last.
    bool AddChild(const Item& table, const std::string& name) {
        SelectedItem whole = Whole(table);
        const Item* column = Find(whole.columns, name);
        const Item* attribute = column == nullptr ? Find(whole.attributes, name) : nullptr;
        if (column == nullptr && attribute == nullptr) return false;
        if (selected_.empty() || selected_.back().item.schema != table.schema)
            selected_.push_back({table, {}, {}});
        if (column != nullptr) selected_.back().columns.push_back(*column);
        if (attribute != nullptr) selected_.back().attributes.push_back(*attribute);
        return true;
    }

    /// Replaces `children` by those that `names` lists; keeps them all if it is null.
    void Keep(std::vector<Item>& children, const vxJson::Value& names) {
        if (names.isNull()) return;
        std::vector<Item> kept;
        const auto end = names.end();
        for (auto i = names.begin(); !i.isEqual(end); i.increment()) {
            const std::string name = i.deref().asString();
            const Item* child = Find(children, name);
            if (child == nullptr) {
                Complain(name);
            } else {
                kept.push_back(*child);
            }
        }
        children = std::move(kept);
    }

    std::string path_;
    std::vector<Item> items_;
    Complaints& complaints_;
    std::vector<SelectedItem> selected_;
};

void AddFile(Selector& selector, const std::string& path) {
    const vxJson::Value fields = ReadJson(path);
    if (fields.isNull()) return selector.AddAll();
    if (!fields.isArray()) throw Failure(Shown(path) + ": is neither an array nor null");
    try {
        const auto end = fields.end();
        for (auto i = fields.begin(); !i.isEqual(end); i.increment()) selector.AddEntry(i.deref());
    } catch (const vxJson::Error& error) {
        throw Failure(Shown(path) + ": is not a selection (" + error.what() + ")");
    }
}

}  // namespace

std::vector<SelectedItem> Select(const Frame& frame, const std::vector<std::string>& select,
                                 Complaints& complaints) {
    Selector selector(frame, complaints);
    if (select.empty()) selector.AddAll();
    for (const std::string& name : select) {
        if (selector.AddNamed(name)) continue;
        const bool file = name == kStandard || std::filesystem::exists(name);
        if (select.size() == 1 && file) {
            AddFile(selector, name);
        } else {
            selector.Complain(name);
        }
    }
    return selector.Take();
}

}  // namespace tool
