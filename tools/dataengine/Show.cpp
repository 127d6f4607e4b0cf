// Prints the header of a frame and its schema as a tree, with the kind and the beginning of each
// value as it is packed.
#include <algorithm>
#include <cmath>
#include <map>

#include "structure/CDEStructureDataHelper.h"
#include "structure/detail/MsgpackErrors.h"
#include "tools/dataengine/Commands.h"
#include "tools/dataengine/Exact.h"
#include "tools/dataengine/Failure.h"
#include "tools/dataengine/Files.h"
#include "tools/dataengine/Frames.h"
#include "tools/dataengine/Table.h"

namespace dataengine::tool {
namespace {

using detail::PackedBytes;
using detail::PackedKind;

constexpr std::size_t kLongestBeginning = 60;  // in bytes

/// Returns whether the complete value in `bytes` is null in documents.
bool DecodesToNull(std::string_view bytes) {
    vxJson::Value schema, offsets;
    schema[0]["name"] = "value";
    offsets[0] = 0;
    rapidjson::Document document;
    CDEStructureDataHelper::ParseBinaryDataToJson(bytes.data(), static_cast<int>(bytes.size()),
                                                  schema, offsets, {}, document);
    return document[0]["value"].IsNull();
}

const char* NameOf(PackedKind kind) {
    static constexpr const char* kNames[] = {"",    "nil", "bool", "int",   "float32", "float64",
                                             "str", "bin", "ext",  "array", "map"};
    return kNames[static_cast<std::size_t>(kind)];
}

/// Returns an entry of a schema as text; an entry that should be a number may be of any kind.
std::string NumberText(const vxJson::Value& number) {
    return number.isNull() ? "" : number.toString(false);
}

class SchemaTree {
  public:
    explicit SchemaTree(const PackedFrameReader& reader)
        : payload_(reader.Payload()), budget_(4 * payload_.size()) {
        cells_.rows = {{"item", "role", "type", "index", "offset", "size", "kind", "value"}};
    }

    void Add(const Item& item, bool isLastChild) {
        const vxJson::Value& schema = *item.schema;
        const char* const branch = item.table == nullptr ? "" : isLastChild ? "└─ " : "├─ ";
        std::vector<std::string> row = {branch + schema["name"].asString(), item.role,
                                        NumberText(schema["type"]), NumberText(schema["index"])};
        row.resize(8);
        if (!item.HasValue() && item.table == nullptr)
            row[7] = "hashSort " + schema["hashSort"].toString(false) + ", hashColumns " +
                     schema["hashColumns"].toString(false);
        if (item.offset) AddValue(item, row);
        cells_.rows.push_back(std::move(row));
    }
    const Cells& Drawing() const { return cells_; }
    const std::vector<std::string>& Errors() const { return errors_; }

  private:
    void AddValue(const Item& item, std::vector<std::string>& row) {
        row[4] = std::to_string(*item.offset);
        try {
            const auto found = values_.find(*item.offset);
            const auto& [kind, size, text] =
                found != values_.end() ? found->second : Value(*item.offset);
            row[5] = std::to_string(size);
            row[6] = kind;
            row[7] = text;
        } catch (const msgpack::unpack_error& error) {
            errors_.push_back(item.Path() + ": " + error.what());
        } catch (const Failure& error) {
            errors_.push_back(item.Path() + ": " + error.what());
        }
    }
    struct Shown {
        const char* kind;
        std::size_t size;
        std::string text;
    };

    /// Describes the value at `offset`. Items may share it.
    const Shown& Value(std::size_t offset) {
        const std::string_view rest = payload_.substr(std::min(offset, payload_.size()));
        PackedBytes bytes(rest.data(), rest.size());
        const PackedKind kind = bytes.Head().kind;
        bytes.Skip();
        const auto size = static_cast<std::size_t>(bytes.Next() - rest.data());
        if (size > budget_) throw Failure("the values overlap too often to show this one");
        budget_ -= size;
        PackedBytes again(rest.data(), size);
        Exact exact = ReadExact(again, 4 * kLongestBeginning);
        if (exact.nullReason.empty() && exact.hasOddBin && DecodesToNull(rest.substr(0, size)))
            exact.nullReason = "a bin that is not JSON text";
        std::string text = Cut(exact.text, kLongestBeginning);
        if (!exact.nullReason.empty())
            text = "null in documents (" + exact.nullReason + "): " + text;
        return values_[offset] = {NameOf(kind), size, std::move(text)};
    }

    std::string_view payload_;
    std::size_t budget_;                   // bytes of values that may still be read
    std::map<std::size_t, Shown> values_;  // by offset
    std::vector<std::string> errors_;
    StringCells cells_;
};

}  // namespace

int Show(const Options& options) {
    const std::string& path = options.input;
    CheckPaths({path, options.offsets}, {options.output});
    const std::string bytes = ReadFile(path);
    PackedFrameReader reader;
    OpenFrame(reader, path, bytes);
    std::vector<Item> items = ItemsOf(reader);
    std::vector<std::string> errors;
    if (options.offsets.empty()) {
        const std::string error = FindOffsets(items, reader);
        if (!error.empty()) errors.push_back(error + "; the values from here on are not found");
    } else {
        SetOffsets(items, ReadOffsets(options.offsets));
    }
    SchemaTree tree(reader);
    for (std::size_t i = 0; i < items.size(); ++i)
        tree.Add(items[i], i + 1 == items.size() || items[i + 1].table == nullptr);
    errors.insert(errors.end(), tree.Errors().begin(), tree.Errors().end());

    Output output(options.output, Content::kSafe);
    Sink sink([&](std::string_view text) { output.Write(text); });
    sink.text += ("name     " + Printable(reader.Name()) + "\nheader   " +
                  std::to_string(reader.HeaderLength()) + " bytes\npayload  " +
                  std::to_string(reader.Payload().size()) + " bytes\n\n");
    DrawTable(tree.Drawing(), Screen::Of(options), sink);
    sink.Flush();
    Output::Complete(output);
    for (const std::string& error : errors) PrintError(DisplayName(path) + ": " + error);
    return errors.empty() ? 0 : 1;
}

}  // namespace dataengine::tool
