#include "structure/CDEStructureDataHelper.h"

#include <istream>
#include <limits>
#include <streambuf>
#include <string_view>
#include <unordered_map>

#include "documents/RenderJson.h"
#include "structure/detail/CheckingVisitor.h"
#include "structure/detail/NameIndex.h"
#include "structure/detail/PackedPrinter.h"
#include "structure/detail/PackedWalk.h"
#include "structure/detail/SelectionDecoder.h"

namespace {

using dataengine::JsonPool;
using dataengine::kTableType;
using dataengine::RawValues;

constexpr int kFormatVersion = 1;

/// Takes the version: an integer in either wire form.
struct VersionVisitor : dataengine::CheckingVisitor {
    bool visit_positive_integer(std::uint64_t value) {
        fits = value <= std::uint64_t{std::numeric_limits<int>::max()};
        version = static_cast<int>(value);
        return true;
    }
    bool visit_negative_integer(std::int64_t value) {
        fits = value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max();
        version = static_cast<int>(value);
        return true;
    }
    bool start_array(std::uint32_t) { return nested = true; }
    bool start_map(std::uint32_t) { return nested = true; }

    bool fits = false;
    bool nested = false;  // the integers met are elements
    int version = 0;
};

/// Takes the name: where its bytes lie.
struct NameVisitor : dataengine::CheckingVisitor {
    bool visit_str(const char* bytes, std::uint32_t size) {
        found = true;
        name = {bytes, size};
        return true;
    }
    bool visit_bin(const char* bytes, std::uint32_t size) { return visit_str(bytes, size); }
    bool start_array(std::uint32_t) { return nested = true; }
    bool start_map(std::uint32_t) { return nested = true; }

    bool found = false;
    bool nested = false;  // the strings met are elements
    std::string_view name;
};

/// What a header raises whose version or name is of another kind.
class BadCast : public msgpack::type_error {
  public:
    const char* what() const noexcept override { return "bad cast"; }
};

/// Reads a text in place.
class TextBuffer : public std::streambuf {
  public:
    explicit TextBuffer(std::string_view text) {
        char* const begin = const_cast<char*>(text.data());  // nothing is ever put back
        setg(begin, begin, begin + text.size());
    }
};

/// A text up to its first zero byte: all that a document takes of a name.
std::string_view UpToZero(std::string_view text) {
    return text.substr(0, text.find('\0'));
}

/// Whether a selection of everything in `schema` selects anything.
bool HasName(const vxJson::Value& schema) {
    const auto end = schema.end();
    for (auto position = schema.begin(); !position.isEqual(end); position.increment()) {
        const vxJson::Value& item = position.deref();
        if (item["name"].isString()) return true;
    }
    return false;
}

rapidjson::Value* FindMember(rapidjson::Value& object, const char* name) {
    if (!object.IsObject()) return nullptr;
    const auto member = object.FindMember(name);
    return member == object.MemberEnd() ? nullptr : &member->value;
}

std::string_view ReadText(const rapidjson::Value* value) {
    if (value == nullptr || !value->IsString()) return {};
    return UpToZero({value->GetString(), value->GetStringLength()});
}

void WriteText(rapidjson::Value* value, std::string_view text, JsonPool& pool) {
    if (value == nullptr) return;
    const std::string_view written = UpToZero(text);
    RawValues::MakeString(*value, written.data(), static_cast<rapidjson::SizeType>(written.size()),
                          pool);
}

/// The wanted names of one parser's variables, by the names that the variables have.
using WantedNames = std::unordered_map<std::string_view, std::string_view>;

void RenameLeaf(const WantedNames& wanted, rapidjson::Value* name, JsonPool& pool) {
    const auto hit = wanted.find(ReadText(name));
    if (hit != wanted.end()) WriteText(name, hit->second, pool);
}

void RenameTable(const WantedNames& wanted, rapidjson::Value* name, rapidjson::Value* columns,
                 JsonPool& pool) {
    if (columns == nullptr || !columns->IsArray()) return;
    // Columns are looked up under the table's name as it was, whatever the columns before made it.
    std::string fullName(ReadText(name));
    fullName += '.';
    const std::size_t prefix = fullName.size();
    for (rapidjson::Value& column : columns->GetArray()) {
        rapidjson::Value* columnName = FindMember(column, "name");
        fullName.resize(prefix);
        fullName += ReadText(columnName);
        const auto hit = wanted.find(fullName);
        if (hit == wanted.end()) continue;
        const std::size_t dot = hit->second.find('.');
        if (dot == std::string_view::npos) continue;
        WriteText(name, hit->second.substr(0, dot), pool);
        WriteText(columnName, hit->second.substr(dot + 1), pool);
    }
}

}  // namespace

bool CDEStructureDataHelper::GetBinaryDataInfo(const std::string& blob, std::string& name,
                                               vxJson::Value& schema, int& offset) {
    std::size_t taken = 0;
    VersionVisitor version;
    msgpack::parse(blob.data(), blob.size(), taken, version);
    if (version.nested || !version.fits) throw BadCast();
    if (version.version != kFormatVersion) return false;

    NameVisitor unit;
    msgpack::parse(blob.data(), blob.size(), taken, unit);
    if (unit.nested || !unit.found) throw BadCast();
    name = std::string(unit.name);

    dataengine::PackedBytes bytes(blob.data() + taken, blob.size() - taken);
    dataengine::PackedPrinter printer(dataengine::FloatStyle::kSixSignificant);
    dataengine::PackedWalk(bytes, printer).Run();
    TextBuffer buffer(printer.Text());
    std::istream stream(&buffer);
    vxJson::Reader reader;
    reader.parse(stream, schema, true);
    offset = static_cast<int>(bytes.Next() - blob.data());
    return true;
}

bool CDEStructureDataHelper::ParseBinaryDataToJson(const char* buf, int len,
                                                   const vxJson::Value& schema,
                                                   const vxJson::Value& offsets,
                                                   const vxJson::Value& fields,
                                                   rapidjson::Document& out) {
    if (!schema.isArray() || !offsets.isArray()) return false;
    const bool all = fields.isNull();
    if (all ? !HasName(schema) : !fields.isArray()) return false;

    const vxJson::Value& entries = all ? schema : fields;
    JsonPool& pool = out.GetAllocator();
    out.SetArray();
    RawValues::Reserve(out, entries.size(), pool);
    dataengine::SelectionDecoder decoder(buf, len, schema, offsets, pool);
    const auto end = entries.end();
    for (auto position = entries.begin(); !position.isEqual(end); position.increment()) {
        const vxJson::Value& entry = position.deref();
        if (!all) {
            decoder.AddSelected(entry, out);
        } else {
            decoder.AddItem(entry, out);
        }
    }
    return true;
}

const vxJson::Value* CDEStructureDataHelper::GetChildItemByName(const std::string& name,
                                                                const vxJson::Value& list) {
    return dataengine::NameIndex(list).Find(name);
}

bool CDEStructureDataHelper::PostDataProcessing(const std::map<DDKey, DDKey>& mapping,
                                                const std::string& parserPath,
                                                rapidjson::Document& document,
                                                std::vector<std::string>& items) {
    WantedNames wanted;
    for (const auto& [key, variable] : mapping) {
        if (variable.parserPath_ == parserPath) wanted[variable.varFullName_] = key.varFullName_;
    }
    if (!document.IsArray()) return true;

    JsonPool& pool = document.GetAllocator();
    dataengine::JsonBuffer buffer;
    dataengine::JsonWriter writer(buffer);
    for (rapidjson::Value& item : document.GetArray()) {
        const rapidjson::Value* type = FindMember(item, "type");
        rapidjson::Value* name = FindMember(item, "name");
        if (type != nullptr && type->IsInt() && type->GetInt() == kTableType) {
            RenameTable(wanted, name, FindMember(item, "column"), pool);
        } else {
            RenameLeaf(wanted, name, pool);
        }
        buffer.Clear();
        writer.Reset(buffer);
        dataengine::RenderJson(item, writer);
        items.emplace_back(buffer.GetString(), buffer.GetSize());
    }
    return true;
}
