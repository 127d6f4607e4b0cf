#include "structure/detail/Renaming.h"

#include <algorithm>
#include <limits>
#include <new>
#include <string>
#include <utility>

#include "contracts/detail/rapidjson/FindMember.h"
#include "structure/detail/PackedFormat.h"

namespace dataengine::detail {
namespace {

std::string_view ReadText(const rapidjson::Value* value) {
    if (value == nullptr || !value->IsString()) return {};
    return UpToZero({value->GetString(), value->GetStringLength()});
}

void WriteText(rapidjson::Value* value, std::string_view text, JsonPool& pool) {
    if (value == nullptr) return;
    const std::string_view written = UpToZero(text);
    if (written.size() > std::numeric_limits<rapidjson::SizeType>::max()) throw std::bad_alloc();
    RawValues::MakeString(*value, written.data(), static_cast<rapidjson::SizeType>(written.size()),
                          pool);
}

}  // namespace

Renaming::Renaming(std::vector<WantedName> names) : names_(std::move(names)) {
    const auto isLess = [](const WantedName& a, const WantedName& b) {
        const int order = a.name.compare(b.name);
        return order != 0 ? order < 0 : a.rank > b.rank;
    };
    // Lookups find the first of several equal names. A stable sort would hide that memory ran out.
    std::sort(names_.begin(), names_.end(), isLess);
}

void Renaming::Apply(rapidjson::Value& item, JsonPool& pool) const {
    const rapidjson::Value* type = FindMember(item, "type");
    rapidjson::Value* name = FindMember(item, "name");
    if (type != nullptr && type->IsInt() && type->GetInt() == kTableType) {
        rapidjson::Value* columns = FindMember(item, "column");
        if (columns != nullptr && columns->IsArray()) RenameTable(name, *columns, pool);
        return;
    }
    const WantedName* hit = Find({names_.begin(), names_.end()}, ReadText(name));
    if (hit != nullptr) WriteText(name, hit->wanted, pool);
}

void Renaming::RenameTable(rapidjson::Value* name, rapidjson::Value& columns,
                           JsonPool& pool) const {
    const std::string_view table = ReadText(name);
    const Range range = ColumnsOf(table);
    const WantedName* last = nullptr;
    for (rapidjson::Value& column : columns.GetArray()) {
        rapidjson::Value* columnName = FindMember(column, "name");
        const WantedName* hit = Find(range, ReadText(columnName), table.size() + 1);
        if (hit == nullptr || hit->dot == std::string_view::npos) continue;
        WriteText(columnName, hit->wanted.substr(hit->dot + 1), pool);
        last = hit;
    }
    // Written once: the columns of a table may each rename it.
    if (last != nullptr) WriteText(name, last->wanted.substr(0, last->dot), pool);
}

const WantedName* Renaming::Find(const Range& range, std::string_view name, std::size_t skipped) {
    const auto isLess = [skipped](const WantedName& other, std::string_view wanted) {
        return other.name.substr(skipped) < wanted;
    };
    const auto entry = std::lower_bound(range.begin, range.end, name, isLess);
    const bool found = entry != range.end && entry->name.substr(skipped) == name;
    return found ? &*entry : nullptr;
}

Renaming::Range Renaming::ColumnsOf(std::string_view table) const {
    const std::string prefix = std::string(table) + '.';
    const auto isLess = [&prefix](const WantedName& entry, int) {
        return entry.name.compare(0, prefix.size(), prefix) < 0;
    };
    const auto isGreater = [&prefix](int, const WantedName& entry) {
        return entry.name.compare(0, prefix.size(), prefix) > 0;
    };
    const auto begin = std::lower_bound(names_.begin(), names_.end(), 0, isLess);
    return {begin, std::upper_bound(begin, names_.end(), 0, isGreater)};
}

}  // namespace dataengine::detail
