// Prints the header of a frame and its schema as a tree, with the offset, size and start of each
// value.
#include "tools/dataengine/Commands.h"
#include "tools/dataengine/Files.h"
#include "tools/dataengine/Frame.h"
#include "tools/dataengine/Table.h"

namespace tool {
namespace {

constexpr std::size_t kLongestBeginning = 60;  // in bytes of JSON text

/// Returns an entry of a schema as text; an entry that should be a number may be of any kind.
std::string NumberText(const vxJson::Value& number) {
    return number.isNull() ? "" : number.toString(false);
}

class SchemaTree {
  public:
    SchemaTree(const Frame& frame, const Offsets& offsets, ErrorReporter& errors)
        : frame_(frame), offsets_(offsets), errors_(errors) {}

    void AddAll() {
        for (const Item& item : ItemsOf(frame_.schema)) {
            if (item.IsTable()) {
                AddTable(item);
            } else {
                AddValue(item, "", "leaf");
            }
        }
    }
    std::string Draw(const Screen& screen) const { return table_.Draw(screen); }

  private:
    void AddTable(const Item& item) {
        const vxJson::Value& schema = *item.schema;
        table_.Add({schema["name"].asString(), "table", NumberText(schema["type"]),
                    NumberText(schema["index"]), "", "",
                    "hashSort " + schema["hashSort"].toString(false) + ", hashColumns " +
                        schema["hashColumns"].toString(false)});
        const std::vector<Item> columns = ItemsOf(schema["column"], item.path + ".");
        const std::vector<Item> attributes = ItemsOf(schema["attributes"], item.path + ".");
        for (const Item& column : columns) {
            const bool last = &column == &columns.back() && attributes.empty();
            AddValue(column, last ? "└─ " : "├─ ", "column");
        }
        for (const Item& attribute : attributes)
            AddValue(attribute, &attribute == &attributes.back() ? "└─ " : "├─ ", "attribute");
    }

    void AddValue(const Item& item, const std::string& branch, const std::string& kind) {
        const vxJson::Value& schema = *item.schema;
        Table::Row row = {branch + schema["name"].asString(),
                          kind,
                          NumberText(schema["type"]),
                          NumberText(schema["index"]),
                          "",
                          "",
                          ""};
        const auto offset = offsets_.byItem.find(item.schema);
        if (offset != offsets_.byItem.end()) {
            row[4] = std::to_string(offset->second);
            try {
                row[5] = std::to_string(SizeOfValue(frame_, item, offset->second));
                row[6] = Beginning(item, offset->second);
            } catch (const Failure& failure) {
                errors_.Report(failure.what());
            }
        }
        table_.Add(std::move(row));
    }

    std::string Beginning(const Item& item, int offset) const {
        rapidjson::Document list(rapidjson::kArrayType);
        DecodeValue(frame_, item, offset, list, list.GetAllocator());
        std::string text = JsonText(list[0]["value"]);
        if (text.size() <= kLongestBeginning) return text;
        std::size_t end = kLongestBeginning;
        while (end > 0 && (text[end] & 0xc0) == 0x80) --end;  // do not split a character
        return text.substr(0, end) + "…";
    }

    const Frame& frame_;
    const Offsets& offsets_;
    ErrorReporter& errors_;
    Table table_{{"item", "kind", "type", "index", "offset", "size", "value"}};
};

}  // namespace

int Show(const ShowOptions& options) {
    CheckPaths({options.frame, options.offsets}, {options.output});
    ErrorReporter errors;
    const Frame frame = ReadFrame(options.frame);
    const Offsets offsets = LocateValues(frame, options.offsets, errors);
    SchemaTree tree(frame, offsets, errors);
    tree.AddAll();
    const Screen screen = Screen::Of(options.output);
    const std::string text = "name     " + Printable(frame.name) + "\nheader   " +
                             std::to_string(frame.headerLength) + " bytes\npayload  " +
                             std::to_string(frame.Payload().size()) + " bytes\n\n" +
                             tree.Draw(screen);
    WriteFiles({{options.output, text}});
    return errors.Status();
}

}  // namespace tool
