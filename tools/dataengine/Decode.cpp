// Decodes the selected values of a frame, renames them if asked to, and prints them.
#include "structure/CDEStructureDataHelper.h"
#include "tools/dataengine/Commands.h"
#include "tools/dataengine/Files.h"
#include "tools/dataengine/Formats.h"
#include "tools/dataengine/Frame.h"
#include "tools/dataengine/Mapping.h"
#include "tools/dataengine/Selection.h"

namespace tool {
namespace {

using Pool = rapidjson::Document::AllocatorType;

/// Decodes items one by one, so that a broken value does not affect the others.
class Decoder {
  public:
    Decoder(const Frame& frame, const Offsets& offsets, ErrorReporter& errors)
        : frame_(frame), offsets_(offsets), errors_(errors) {
        document_.SetArray();
    }

    void Add(const SelectedItem& selected) {
        if (!selected.item.IsTable()) {
            AddValue(selected.item, document_);
            return;
        }
        try {
            rapidjson::Value table = EmptyTable(*selected.item.schema);
            for (const Item& column : selected.columns) AddValue(column, table["column"]);
            for (const Item& attribute : selected.attributes)
                AddValue(attribute, table["attributes"]);
            document_.PushBack(table, document_.GetAllocator());
        } catch (const vxJson::Error& error) {
            Report(selected.item, error.what());
        }
    }
    rapidjson::Document& Result() { return document_; }

  private:
    /// Returns a table in the decoder's form without columns and attributes.
    rapidjson::Value EmptyTable(const vxJson::Value& item) {
        vxJson::Value schema;
        vxJson::Value& table = schema.append(vxJson::Value());
        for (const char* key : {"name", "type", "hashSort", "hashColumns"}) table[key] = item[key];
        vxJson::Value fields;
        fields[0]["table"] = "$" + item["name"].asString();
        const vxJson::Value noOffsets(vxJson::arrayKind, false);
        rapidjson::Document list(&document_.GetAllocator());
        CDEStructureDataHelper::ParseBinaryDataToJson("", 0, schema, noOffsets, fields, list);
        return std::move(list[0]);
    }

    void AddValue(const Item& item, rapidjson::Value& list) {
        const auto offset = offsets_.byItem.find(item.schema);
        const bool located = offset != offsets_.byItem.end();
        if (!located && !item.IsTable()) {
            // FindOffsets has already reported values that it did not find.
            if (offsets_.given) Report(item, "has no offset");
            return;
        }
        try {
            DecodeValue(frame_, item, located ? offset->second : 0, list, document_.GetAllocator());
        } catch (const Failure& failure) {
            errors_.Report(failure.what());
        }
    }

    void Report(const Item& item, const std::string& what) {
        errors_.Report(DisplayName(frame_.path) + ": " + item.path + ": " + what);
    }

    const Frame& frame_;
    const Offsets& offsets_;
    ErrorReporter& errors_;
    rapidjson::Document document_;
};

}  // namespace

int Decode(const DecodeOptions& options) {
    std::vector<std::string> inputs = {options.frame, options.offsets, options.map};
    if (options.select.size() == 1 && IsFile(options.select[0]))
        inputs.push_back(options.select[0]);
    CheckPaths(inputs, {options.output});
    ErrorReporter errors;
    const Frame frame = ReadFrame(options.frame);
    const Offsets offsets = LocateValues(frame, options.offsets, errors);
    const std::string parser = options.parser.empty() ? frame.name : options.parser;
    const auto mapping = ReadMapping(options.map, parser);
    Decoder decoder(frame, offsets, errors);
    for (const SelectedItem& item : Select(frame, options.select, errors)) decoder.Add(item);

    std::vector<std::string> items;
    CDEStructureDataHelper::PostDataProcessing(mapping, parser, decoder.Result(), items);
    const std::string text = options.format == "json"    ? FormatJson(items)
                             : options.format == "lines" ? FormatLines(items)
                             : options.format == "csv"
                                 ? FormatCsv(decoder.Result())
                                 : FormatTables(decoder.Result(), Screen::Of(options.output));
    WriteFiles({{options.output, text}});
    return errors.Status();
}

}  // namespace tool
