// Prints the items, columns and rows in which two frames differ, one per line.
#include <algorithm>
#include <map>

#include "structure/detail/MsgpackErrors.h"
#include "structure/detail/PackedBytes.h"
#include "tools/dataengine/Commands.h"
#include "tools/dataengine/Exact.h"
#include "tools/dataengine/Failure.h"
#include "tools/dataengine/Files.h"
#include "tools/dataengine/Frames.h"
#include "tools/dataengine/Table.h"

namespace dataengine::tool {
namespace {

using Items = std::vector<const Item*>;

constexpr std::size_t kLongest = 60;  // in columns, of a value or a name in a line
constexpr std::size_t kNone = static_cast<std::size_t>(-1);

/// One of the two frames. The children of a table are found by its schema, the items by null.
struct Side {
    explicit Side(const std::string& file) : path(file), bytes(ReadFile(file)) {
        OpenFrame(reader, path, bytes);
        items = ItemsOf(reader);
        const std::string error = FindOffsets(items, reader);
        if (!error.empty()) throw Failure(path, error);
        for (const Item& item : items) lists[item.table].push_back(&item);
    }

    detail::PackedBytes Value(const Item& item) const {
        const std::string_view value = reader.Payload().substr(item.offset.value_or(0));
        return {value.data(), value.size()};
    }

    const std::string& path;
    std::string bytes;
    PackedFrameReader reader;
    std::vector<Item> items;
    std::map<const vxJson::Value*, Items> lists;
};

std::string NameOf(const Item& item) {
    return (*item.schema)["name"].asString();
}

/// Returns the exact text of a value, or of each element of a column.
std::vector<std::string> TextsOf(const Side& side, const Item& item) {
    if (!item.HasValue()) return {};
    detail::PackedBytes bytes = side.Value(item);
    const bool isColumn =
        item.role == std::string("column") && bytes.Head().kind == detail::PackedKind::kArray;
    std::vector<std::string> texts(isColumn ? bytes.TakeLength(bytes.Head()) : 1);
    for (std::string& text : texts) text = ExactText(bytes);
    return texts;
}

/// A column or attribute that both frames have, and the texts of its values.
struct Pair {
    std::string name;
    std::vector<std::string> a, b;
};

/// Matches two sequences of keys: the first with the first of a key, the second with the second.
/// Returns the position of each element of `a` in `b`, or kNone.
std::vector<std::size_t> Match(const std::vector<std::string>& a,
                               const std::vector<std::string>& b) {
    std::map<std::string_view, std::vector<std::size_t>> positions;
    for (std::size_t i = b.size(); i-- > 0;) positions[b[i]].push_back(i);
    std::vector<std::size_t> matches;
    for (const std::string& key : a) {
        const auto found = positions.find(key);
        const bool isFound = found != positions.end() && !found->second.empty();
        matches.push_back(isFound ? found->second.back() : kNone);
        if (isFound) found->second.pop_back();
    }
    return matches;
}

class Differences {
  public:
    Differences(const Side& a, const Side& b, Sink& sink) : a_(a), b_(b), sink_(sink) {}

    void Compare() {
        Change("unit", JsonString(a_.reader.Name()), JsonString(b_.reader.Name()));
        CompareLists("", nullptr, nullptr);
    }
    bool Any() const { return any_; }

  private:
    /// Compares the items of the frames, or the children of two tables. Returns the columns that
    /// both have. Children have no children: the recursion has two levels.
    // NOLINTNEXTLINE(misc-no-recursion)
    std::vector<Pair> CompareLists(const std::string& prefix, const vxJson::Value* tableA,
                                   const vxJson::Value* tableB) {
        const Items listA = ListOf(a_, tableA), listB = ListOf(b_, tableB);
        const auto keys = [](const Items& items) {
            std::vector<std::string> names;
            for (const Item* item : items) names.push_back(NameOf(*item));
            return names;
        };
        const std::vector<std::size_t> matches = Match(keys(listA), keys(listB));
        std::vector<bool> isMatched(listB.size());
        std::vector<Pair> columns;
        for (std::size_t i = 0; i < listA.size(); ++i) {
            const std::string path = prefix + Short(NameOf(*listA[i]));
            if (matches[i] == kNone) {
                Print(path, "only in " + a_.path);
                continue;
            }
            isMatched[matches[i]] = true;
            CompareItems(path, *listA[i], *listB[matches[i]], columns);
        }
        for (std::size_t i = 0; i < listB.size(); ++i)
            if (!isMatched[i]) Print(prefix + Short(NameOf(*listB[i])), "only in " + b_.path);
        return columns;
    }

    // NOLINTNEXTLINE(misc-no-recursion)
    void CompareItems(const std::string& path, const Item& a, const Item& b,
                      std::vector<Pair>& columns) {
        Change(path + ": role", a.role, b.role);
        for (const char* key : {"type", "hashSort", "hashColumns"})
            Change(path + ": " + key, (*a.schema)[key].toString(false),
                   (*b.schema)[key].toString(false));
        if (a.role != b.role) return;
        if (!a.HasValue() && !b.HasValue() && a.table == nullptr) {
            const std::vector<Pair> pairs = CompareLists(path + ".", a.schema, b.schema);
            return CompareRows(path, *a.schema, *b.schema, pairs);
        }
        Pair pair{NameOf(a), TextsOf(a_, a), TextsOf(b_, b)};
        if (a.role == std::string("column")) {
            columns.push_back(std::move(pair));
        } else if (pair.a != pair.b) {
            Change(path, pair.a.empty() ? "" : pair.a[0], pair.b.empty() ? "" : pair.b[0]);
        }
    }

    /// Compares the rows of a table by the values of its hash columns, if both tables have the same
    /// ones, and otherwise by number.
    void CompareRows(const std::string& path, const vxJson::Value& tableA,
                     const vxJson::Value& tableB, const std::vector<Pair>& columns) {
        std::vector<const Pair*> hashed;
        if (tableA["hashColumns"] == tableB["hashColumns"])
            hashed = HashColumns(tableA["hashColumns"], columns);
        const std::vector<std::string> keysA = KeysOf(hashed, columns, &Pair::a);
        const std::vector<std::string> keysB = KeysOf(hashed, columns, &Pair::b);
        const std::vector<std::size_t> toB = Match(keysA, keysB);
        std::vector<std::size_t> toA(keysB.size(), kNone);
        for (std::size_t row = 0; row < toB.size(); ++row)
            if (toB[row] != kNone) toA[toB[row]] = row;

        std::vector<std::string> changes(keysA.size());
        for (const Pair& column : columns) AddChanges(column, toA, toB, changes);
        for (std::size_t row = 0; row < changes.size(); ++row) {
            if (toB[row] == kNone) changes[row] = "only in " + a_.path;
            if (!changes[row].empty()) Print(path + " row " + Short(keysA[row]), changes[row]);
        }
        for (std::size_t row = 0; row < toA.size(); ++row)
            if (toA[row] == kNone) Print(path + " row " + Short(keysB[row]), "only in " + b_.path);
    }

    static std::vector<const Pair*> HashColumns(const vxJson::Value& names,
                                                const std::vector<Pair>& columns) {
        std::map<std::string, const Pair*> byName;
        for (const Pair& column : columns) byName.emplace(column.name, &column);
        std::vector<const Pair*> hashed;
        for (const vxJson::Value& name : names) {
            const auto found = byName.find(name.isString() ? name.asString() : "");
            if (found == byName.end()) return {};
            if (found->second != nullptr) hashed.push_back(found->second);
            found->second = nullptr;  // each counts once
        }
        return hashed;
    }

    static std::vector<std::string> KeysOf(const std::vector<const Pair*>& hashed,
                                           const std::vector<Pair>& columns,
                                           std::vector<std::string> Pair::*side) {
        std::size_t count = 0;
        for (const Pair& column : columns) count = std::max(count, (column.*side).size());
        std::vector<std::string> keys(count);
        for (std::size_t row = 0; hashed.empty() && row < count; ++row)
            keys[row] = std::to_string(row + 1);
        for (const Pair* column : hashed)
            for (std::size_t row = 0; row < (column->*side).size(); ++row)
                keys[row] += (keys[row].empty() ? "" : ",") + (column->*side)[row];
        return keys;
    }

    /// Adds the changes of a column to those of the rows. Its length bounds the time.
    static void AddChanges(const Pair& column, const std::vector<std::size_t>& toA,
                           const std::vector<std::size_t>& toB, std::vector<std::string>& changes) {
        static const std::string missing = "nothing";
        const auto compare = [&](std::size_t a, std::size_t b) {
            const std::string& from = a < column.a.size() ? column.a[a] : missing;
            const std::string& to = b < column.b.size() ? column.b[b] : missing;
            if (from == to) return;
            changes[a] += (changes[a].empty() ? "" : ", ") + Short(column.name) + " " +
                          Cut(from, kLongest) + " -> " + Cut(to, kLongest);
        };
        for (std::size_t a = 0; a < column.a.size(); ++a)
            if (toB[a] != kNone) compare(a, toB[a]);
        for (std::size_t b = 0; b < column.b.size(); ++b)
            if (toA[b] != kNone && toA[b] >= column.a.size()) compare(toA[b], b);
    }

    static std::string Short(const std::string& text) { return Cut(Printable(text), kLongest); }

    static const Items& ListOf(const Side& side, const vxJson::Value* table) {
        static const Items none;
        const auto found = side.lists.find(table);
        return found == side.lists.end() ? none : found->second;
    }

    void Change(const std::string& what, const std::string& from, const std::string& to) {
        if (from != to) Print(what, Short(from) + " -> " + Short(to));
    }
    void Print(const std::string& what, const std::string& difference) {
        sink_.text += what + ": " + difference + "\n";
        sink_.Check();
        any_ = true;
    }

    const Side& a_;
    const Side& b_;
    Sink& sink_;
    bool any_ = false;
};

}  // namespace

int Diff(const Options& options) {
    CheckPaths({options.input, options.other}, {options.output});
    const Side a(options.input), b(options.other);
    Output output(options.output, Content::kSafe);
    Sink sink([&](std::string_view text) { output.Write(text); });
    Differences differences(a, b, sink);
    differences.Compare();
    sink.Flush();
    Output::Complete(output);
    return differences.Any() ? 1 : 0;
}

}  // namespace dataengine::tool
