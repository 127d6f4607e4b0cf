// Prints the items, columns and rows in which two frames differ, one per line.
#include <algorithm>
#include <map>

#include "tools/dataengine/Commands.h"
#include "tools/dataengine/Exact.h"
#include "tools/dataengine/Frames.h"

namespace dataengine::tool {
namespace {

using Items = std::vector<const Item*>;
using Texts = std::vector<std::string>;
using Matches = std::vector<std::size_t>;

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

std::string Short(const std::string& text) {
    constexpr std::size_t kLongest = 60;  // in columns
    return Cut(Printable(text, Content::kJson), kLongest);
}

/// Returns a change; nothing if both texts are equal.
std::string Change(const std::string& what, const std::string& from, const std::string& to) {
    return from == to ? "" : what + Short(from) + " -> " + Short(to);
}

void Append(std::string& changes, const std::string& change) {
    changes += (changes.empty() || change.empty() ? "" : ", ") + change;
}

/// Returns the items of a frame, or the children of a table.
Items ListOf(const Frame& frame, const Item* table) {
    Items list;
    const Item* const end = frame.items.data() + frame.items.size();
    for (const Item* item = table == nullptr ? frame.items.data() : table + 1; item != end;
         ++item) {
        if (item->table == table) list.push_back(item);
        if (table != nullptr && item->table != table) break;  // children follow their table
    }
    return list;
}

Texts NamesOf(const Items& items) {
    Texts names;
    for (const Item* item : items) names.push_back(item->Name());
    return names;
}

/// Returns the exact text of a value, or of each element of a column.
Texts TextsOf(Frame& frame, const Item& item) {
    const std::string_view value = frame.Value(item);
    detail::PackedBytes bytes(value.data(), value.size());
    const bool isColumn = item.role == "column" && bytes.Head().kind == detail::PackedKind::kArray;
    Texts texts(isColumn ? bytes.TakeLength(bytes.Head()) : 1);
    for (std::string& text : texts) text = ReadExact(bytes).text;
    return texts;
}

/// Matches two sequences of keys: the first with the first of a key, the second with the second.
/// Returns the position of each element of `a` in `b`, or kNone.
Matches Match(const Texts& a, const Texts& b) {
    std::map<std::string_view, Matches> positions;
    for (std::size_t i = b.size(); i-- > 0;) positions[b[i]].push_back(i);
    Matches matches;
    for (const std::string& key : a) {
        Matches& found = positions[key];
        matches.push_back(found.empty() ? kNone : found.back());
        if (!found.empty()) found.pop_back();
    }
    return matches;
}

/// A column that both frames have, and the texts of its values.
struct Column {
    std::string name;
    Texts a, b;
};

/// Returns the columns of the names that are hash columns of both tables; none if these differ.
std::vector<const Column*> HashColumns(const vxJson::Value& a, const vxJson::Value& b,
                                       const std::vector<Column>& columns) {
    std::map<std::string, const Column*> byName;
    for (const Column& column : columns) byName.emplace(column.name, &column);
    std::vector<const Column*> hashed;
    for (const vxJson::Value& name : a == b ? a : vxJson::Value()) {
        const auto found = byName.find(name.isString() ? name.asString() : "");
        if (found == byName.end()) return {};
        if (found->second != nullptr) hashed.push_back(found->second);
        found->second = nullptr;  // each counts once
    }
    return hashed;
}

/// Returns the keys of the rows: the values of hash columns, or numbers if there are none.
Texts KeysOf(const std::vector<const Column*>& hashed, const std::vector<Column>& columns,
             Texts Column::*side) {
    std::size_t count = 0;
    for (const Column& column : columns) count = std::max(count, (column.*side).size());
    Texts keys(count);
    for (std::size_t row = 0; hashed.empty() && row < count; ++row)
        keys[row] = std::to_string(row + 1);
    for (const Column* column : hashed)
        for (std::size_t row = 0; row < (column->*side).size(); ++row)
            keys[row] += (keys[row].empty() ? "" : ",") + (column->*side)[row];
    return keys;
}

class Differences {
  public:
    Differences(Frame& a, Frame& b, Output& output) : a_(a), b_(b), output_(output) {}

    void Compare() {
        Print(Change("unit: ", JsonString(a_.reader.Name()), JsonString(b_.reader.Name())));
        CompareItems("", nullptr, nullptr);
    }

  private:
    /// Prints the elements that only one frame has, and those with changes.
    void PrintChanges(const std::string& prefix, const Texts& a, const Texts& b,
                      const Matches& matches, const Texts& changes) {
        std::vector<bool> isMatched(b.size());
        for (std::size_t i = 0; i < a.size(); ++i) {
            if (matches[i] == kNone) Print(prefix + Short(a[i]) + ": only in " + a_.path);
            if (matches[i] == kNone) continue;
            isMatched[matches[i]] = true;
            if (!changes[i].empty()) Print(prefix + Short(a[i]) + ": " + changes[i]);
        }
        for (std::size_t i = 0; i < b.size(); ++i)
            if (!isMatched[i]) Print(prefix + Short(b[i]) + ": only in " + b_.path);
    }

    /// Compares the items of the frames, or the children of two tables. Returns the columns that
    /// both have. Children have no children: the recursion has two levels.
    // NOLINTNEXTLINE(misc-no-recursion)
    std::vector<Column> CompareItems(const std::string& prefix, const Item* tableA,
                                     const Item* tableB) {
        const Items listA = ListOf(a_, tableA), listB = ListOf(b_, tableB);
        const Texts namesA = NamesOf(listA), namesB = NamesOf(listB);
        const Matches matches = Match(namesA, namesB);
        std::vector<Column> columns;
        Texts changes(listA.size());
        for (std::size_t i = 0; i < listA.size(); ++i) {
            if (matches[i] == kNone) continue;
            const Item &a = *listA[i], &b = *listB[matches[i]];
            Append(changes[i], Change("role ", a.role, b.role));
            for (const char* key : {"type", "hashSort", "hashColumns"})
                Append(changes[i], Change(std::string(key) + " ", (*a.schema)[key].toString(false),
                                          (*b.schema)[key].toString(false)));
            if (!a.offset || !b.offset) continue;
            Column values{namesA[i], TextsOf(a_, a), TextsOf(b_, b)};
            if (a.role == "column" && b.role == "column") {
                columns.push_back(std::move(values));
            } else if (!values.a.empty() && !values.b.empty()) {
                Append(changes[i], Change("", values.a[0], values.b[0]));
            }
        }
        PrintChanges(prefix, namesA, namesB, matches, changes);
        for (std::size_t i = 0; i < listA.size(); ++i)
            if (matches[i] != kNone && listA[i]->role == "table" &&
                listB[matches[i]]->role == "table")
                CompareTables(prefix + Short(namesA[i]), *listA[i], *listB[matches[i]]);
        return columns;
    }

    /// Compares the children and the rows of two tables: by the values of their hash columns, if
    /// both have the same ones, and otherwise by number.
    // NOLINTNEXTLINE(misc-no-recursion)
    void CompareTables(const std::string& path, const Item& a, const Item& b) {
        const std::vector<Column> columns = CompareItems(path + ".", &a, &b);
        const auto hashed =
            HashColumns((*a.schema)["hashColumns"], (*b.schema)["hashColumns"], columns);
        const Texts keysA = KeysOf(hashed, columns, &Column::a);
        const Texts keysB = KeysOf(hashed, columns, &Column::b);
        const Matches toB = Match(keysA, keysB);
        Matches toA(keysB.size(), kNone);
        for (std::size_t row = 0; row < toB.size(); ++row)
            if (toB[row] != kNone) toA[toB[row]] = row;
        Texts changes(keysA.size());
        for (const Column& column : columns) AddChanges(column, toA, toB, changes);
        PrintChanges(path + " row ", keysA, keysB, toB, changes);
    }

    /// Adds the changes of a column to those of the rows. Its length bounds the time.
    static void AddChanges(const Column& column, const Matches& toA, const Matches& toB,
                           Texts& changes) {
        const auto compare = [&](std::size_t a, std::size_t b) {
            Append(changes[a],
                   Change(Short(column.name) + " ", a < column.a.size() ? column.a[a] : "nothing",
                          b < column.b.size() ? column.b[b] : "nothing"));
        };
        for (std::size_t a = 0; a < column.a.size(); ++a)
            if (toB[a] != kNone) compare(a, toB[a]);
        for (std::size_t b = 0; b < column.b.size(); ++b)
            if (toA[b] != kNone && toA[b] >= column.a.size()) compare(toA[b], b);
    }

    void Print(const std::string& line) {
        if (line.empty()) return;
        output_.text += line + "\n";
        output_.Check();
        output_.status = 1;
    }

    Frame& a_;
    Frame& b_;
    Output& output_;
};

}  // namespace

void Diff(const Options& options, Output& output) {
    output.content = Content::kSafe;
    Frame a(options.input, ""), b(options.other, "");
    Differences(a, b, output).Compare();
    for (const Frame* frame : {&a, &b}) {
        if (frame->error.empty()) continue;
        output.Report(Failure(frame->path, frame->error).what());
        output.status = 2;
    }
}

}  // namespace dataengine::tool
