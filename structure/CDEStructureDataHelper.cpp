#include "structure/CDEStructureDataHelper.h"

#include <sstream>
#include <utility>

#include "contracts/detail/JsonValues.h"
#include "documents/RenderJson.h"
#include "structure/detail/NameIndex.h"
#include "structure/detail/PackedPrinter.h"
#include "structure/detail/PackedWalk.h"
#include "structure/detail/Renaming.h"
#include "structure/detail/SchemaBuilder.h"
#include "structure/detail/SelectionDecoder.h"

namespace {

using dataengine::detail::JsonPool;
using dataengine::detail::kFormatVersion;
using dataengine::detail::PackedBytes;
using dataengine::detail::PackedHead;
using dataengine::detail::PackedKind;
using dataengine::detail::RawValues;

/// Thrown if the version or the name of a header is of another kind.
class BadCast : public msgpack::type_error {
  public:
    const char* what() const noexcept override { return "bad cast"; }
};

/// Rejects a version or name of another kind. Skips it first, which throws if it is malformed.
[[noreturn]] void Reject(PackedBytes& bytes) {
    bytes.Skip();
    throw BadCast();
}

int ReadVersion(PackedBytes& bytes) {
    const PackedHead& head = bytes.Head();
    if (head.kind != PackedKind::kInteger) Reject(bytes);
    const dataengine::detail::PackedInteger number = bytes.TakeInteger(head);
    const int version = static_cast<int>(number.bits);
    const bool fits =
        static_cast<std::uint64_t>(version) == number.bits && number.isNegative == (version < 0);
    if (!fits) throw BadCast();
    return version;
}

std::string ReadName(PackedBytes& bytes) {
    const PackedHead& head = bytes.Head();
    if (head.kind != PackedKind::kStr && head.kind != PackedKind::kBin) Reject(bytes);
    const std::uint64_t size = bytes.TakeLength(head);
    return std::string(bytes.TakeBytes(size), size);
}

void ReadSchema(PackedBytes& bytes, vxJson::Value& schema) {
    const PackedBytes start = bytes;
    vxJson::Value built = dataengine::detail::NullValue();
    dataengine::detail::SchemaBuilder builder(built);
    if (dataengine::detail::PackedWalk(bytes, builder).Run()) {
        schema = std::move(built);
        return;
    }

    bytes = start;
    dataengine::detail::PackedPrinter printer(dataengine::detail::FloatStyle::kSixSignificant);
    dataengine::detail::PackedWalk(bytes, printer).Run();
    std::istringstream text{std::string(printer.Text())};
    vxJson::Reader().parse(text, schema, true);
}

/// Returns whether any item of `schema` has a name by which it can be selected.
bool HasName(const vxJson::Value& schema) {
    const auto end = schema.end();
    for (auto position = schema.begin(); !position.isEqual(end); position.increment()) {
        const vxJson::Value& item = position.deref();
        if (item["name"].isString()) return true;
    }
    return false;
}

/// Reads a header from `blob`, which must not be `name`.
bool ReadHeader(const std::string& blob, std::string& name, vxJson::Value& schema, int& offset) {
    PackedBytes bytes(blob.data(), blob.size());
    if (ReadVersion(bytes) != kFormatVersion) return false;
    name = ReadName(bytes);
    ReadSchema(bytes, schema);
    offset = static_cast<int>(bytes.Next() - blob.data());
    return true;
}

}  // namespace

bool CDEStructureDataHelper::GetBinaryDataInfo(const std::string& blob, std::string& name,
                                               vxJson::Value& schema, int& offset) {
    if (&blob == &name) return ReadHeader(std::string(blob), name, schema, offset);
    return ReadHeader(blob, name, schema, offset);
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
    dataengine::detail::SelectionDecoder decoder(buf, len, schema, offsets, entries.size(), pool);
    const auto end = entries.end();
    for (auto position = entries.begin(); !position.isEqual(end); position.increment()) {
        const vxJson::Value& entry = position.deref();
        if (all) {
            decoder.AddItem(entry, out);
        } else {
            decoder.AddSelected(entry, out);
        }
    }
    return true;
}

const vxJson::Value* CDEStructureDataHelper::GetChildItemByName(const std::string& name,
                                                                const vxJson::Value& list) {
    return dataengine::detail::NameIndex(list, 1).Find(name);
}

bool CDEStructureDataHelper::PostDataProcessing(const std::map<DDKey, DDKey>& mapping,
                                                const std::string& parserPath,
                                                rapidjson::Document& document,
                                                std::vector<std::string>& items) {
    std::vector<dataengine::detail::WantedName> names;
    for (const auto& [key, variable] : mapping) {
        if (variable.parserPath_ == parserPath)
            names.emplace_back(variable.varFullName_, key.varFullName_, names.size());
    }
    const dataengine::detail::Renaming renaming(std::move(names));
    if (!document.IsArray()) return true;

    dataengine::detail::JsonBuffer buffer;
    dataengine::detail::JsonWriter writer(buffer);
    for (rapidjson::Value& item : document.GetArray()) {
        renaming.Apply(item, document.GetAllocator());
        buffer.Clear();
        writer.Reset(buffer);
        dataengine::detail::RenderJson(item, writer);
        items.emplace_back(buffer.GetString(), buffer.GetSize());
    }
    return true;
}
