#include "tests/support/SameReading.h"

#include <map>
#include <utility>
#include <vector>

#include "structure/CDEStructureDataHelper.h"
#include "tests/support/BothDecoders.h"
#include "tests/support/SameDocument.h"
#include "tests/support/Texts.h"

namespace {

using Pool = rapidjson::Document::AllocatorType;

rapidjson::Value Make(std::int64_t value, Pool&) {
    return rapidjson::Value(value);
}
rapidjson::Value Make(std::uint64_t value, Pool&) {
    return rapidjson::Value(value);
}
rapidjson::Value Make(double value, Pool&) {
    return rapidjson::Value(value);
}
rapidjson::Value Make(std::uint8_t value, Pool&) {
    return rapidjson::Value(value != 0);
}
rapidjson::Value Make(std::string_view value, Pool& pool) {
    return rapidjson::Value(value.data(), static_cast<rapidjson::SizeType>(value.size()), pool);
}

/// Compares a table of a document with the one of this name that the reader decodes into arrays.
testing::AssertionResult SameTable(dataengine::PackedFrameReader& reader,
                                   const vxJson::Value& offsets, rapidjson::Value& wanted,
                                   Pool& pool) {
    dataengine::PackedTable table;
    if (!reader.DecodeTable(wanted["name"].GetString(), offsets, table))
        return testing::AssertionSuccess();  // the name in the schema goes on after a zero byte
    rapidjson::Value columns(rapidjson::kArrayType);
    for (const rapidjson::Value& column : wanted["column"].GetArray())
        if (column.HasMember("value"))
            columns.PushBack(rapidjson::Value(column["value"], pool), pool);
    rapidjson::Value decoded(rapidjson::kArrayType);
    for (const dataengine::PackedColumn& column : table.columns)
        decoded.PushBack(DocumentValue(column, pool), pool);
    const testing::AssertionResult same = SameDocument(decoded, columns);
    return same ? SameDocument(table.document, wanted["attributes"]) : same;
}

/// Compares the tables of a document, except those of one name.
testing::AssertionResult SameTables(dataengine::PackedFrameReader& reader,
                                    const vxJson::Value& offsets, rapidjson::Document& document) {
    std::map<std::string, std::vector<rapidjson::Value*>> tables;
    for (rapidjson::Value& item : document.GetArray())
        if (item.HasMember("column")) tables[item["name"].GetString()].push_back(&item);
    for (const auto& [name, items] : tables) {
        if (items.size() != 1) continue;
        const auto same = SameTable(reader, offsets, *items[0], document.GetAllocator());
        if (!same) return testing::AssertionFailure() << "table " << name << ": " << same.message();
    }
    return testing::AssertionSuccess();
}

/// Returns the class of an ending, without the text of an error.
std::string ClassOf(const std::string& ending) {
    return ending.substr(0, ending.find(':'));
}

/// Returns a selection in which plain names, which may name tables for a reader only, have the
/// object form.
vxJson::Value InObjectForm(vxJson::Value selection) {
    if (!selection.isArray()) return selection;
    for (vxJson::Value& entry : selection)
        if (entry.isString()) entry["table"] = std::exchange(entry, vxJson::Value());
    return selection;
}

}  // namespace

rapidjson::Value DocumentValue(const dataengine::PackedColumn& column, Pool& pool) {
    if (const auto* value = std::get_if<rapidjson::Value>(&column.values))
        return rapidjson::Value(*value, pool);
    rapidjson::Value list(rapidjson::kArrayType);
    std::visit(
        [&](const auto& values) {
            if constexpr (!std::is_same_v<std::decay_t<decltype(values)>, rapidjson::Value>) {
                for (std::size_t i = 0; i < values.size(); ++i) {
                    const bool isNull = !column.isNull.empty() && column.isNull[i] != 0;
                    list.PushBack(isNull ? rapidjson::Value() : Make(values[i], pool), pool);
                }
            }
        },
        column.values);
    return list;
}

testing::AssertionResult SameReading(dataengine::PackedFrameReader& reader,
                                     const std::string& frame, const vxJson::Value& offsets,
                                     const vxJson::Value& selection) {
    const auto failure = [&] {
        return testing::AssertionFailure()
               << "frame " << HexText(frame) << "offsets " << offsets.toString(false)
               << " selection " << selection.toString(false) << ": ";
    };
    const auto bytes = ExactBuffer(frame);
    const Header header = ReadHeader(frame);
    const std::string opened = EndingOf([&] { return reader.Open({bytes.data(), frame.size()}); });
    if (ClassOf(opened) != ClassOf(header.ending))
        return failure() << "opens with " << opened << ", not " << header.ending;
    if (opened != "true") return testing::AssertionSuccess();
    if (reader.Name() != header.name || reader.Schema() != header.schema ||
        reader.HeaderLength() != header.offset)
        return failure() << "the headers differ";

    rapidjson::Document wanted(rapidjson::kTrueType), document(rapidjson::kTrueType);
    const std::string ending = EndingOf([&] {
        return CDEStructureDataHelper::ParseBinaryDataToJson(
            reader.Payload().data(), static_cast<int>(reader.Payload().size()), header.schema,
            offsets, InObjectForm(selection), wanted);
    });
    const std::string decoded = EndingOf([&] { return reader.Decode(offsets, document); });
    if (ClassOf(decoded) != ClassOf(ending))
        return failure() << "decodes with " << decoded << ", not " << ending;
    testing::AssertionResult same = SameDocument(document, wanted);
    if (same && decoded == "true") same = SameTables(reader, offsets, document);
    return same ? same : failure() << same.message();
}
