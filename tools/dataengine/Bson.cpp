// Prints the BSON documents of a file as Extended JSON, one per line, or their elements with types
// and sizes.
#include "tools/dataengine/Commands.h"
#include "tools/dataengine/Failure.h"
#include "tools/dataengine/Files.h"
#include "tools/dataengine/Table.h"

#ifdef DATAENGINE_TOOL_BSON
#include <bson/bson.h>

#include <limits>

#include "bson/Bson.h"
#include "tools/dataengine/Exact.h"
#endif

namespace dataengine::tool {

#ifdef DATAENGINE_TOOL_BSON
namespace {

/// The bytes of an element.
std::string_view ElementOf(const bson_iter_t& at) {
    return {reinterpret_cast<const char*>(at.raw) + at.off, at.next_off - at.off};
}

/// Returns the text of an element that is neither a document nor an array.
std::string ScalarText(const bson_iter_t& at) {
    const std::string_view element = ElementOf(at);
    std::string document(4, '\0');
    document.append(element).push_back('\0');
    for (std::size_t i = 0; i < 4; ++i) document[i] = static_cast<char>(document.size() >> (8 * i));
    std::string text =
        bson::Decode(document.data(), document.size())[bson_iter_key(&at)].toString(false);
    bson_subtype_t subtype = BSON_SUBTYPE_BINARY;
    switch (bson_iter_type(&at)) {
        case BSON_TYPE_OID:
            return "{\"$oid\":" + text + "}";
        case BSON_TYPE_SYMBOL:
            return "{\"$symbol\":" + text + "}";
        case BSON_TYPE_CODE:
            return "{\"$code\":" + text + "}";
        case BSON_TYPE_BINARY: {
            const char number =
                static_cast<char>((bson_iter_binary(&at, &subtype, nullptr, nullptr), subtype));
            return text.replace(text.size() - 5, 2, HexOf({&number, 1}));
        }
        default:
            return text;
    }
}

bool HoldsElements(const bson_iter_t& at) {
    return bson_iter_type(&at) == BSON_TYPE_DOCUMENT || bson_iter_type(&at) == BSON_TYPE_ARRAY;
}

/// Appends a document or an array. It has been checked, so it has at most 100 levels.
// NOLINTNEXTLINE(misc-no-recursion)
void AppendText(bson_iter_t at, bool isArray, std::string& text) {
    char separator = isArray ? '[' : '{';
    bool isEmpty = true;
    for (; bson_iter_next(&at); separator = ',', isEmpty = false) {
        text += separator;
        if (!isArray) text += JsonString(bson_iter_key(&at)) + ":";
        bson_iter_t child;
        if (HoldsElements(at) && bson_iter_recurse(&at, &child)) {
            AppendText(child, bson_iter_type(&at) == BSON_TYPE_ARRAY, text);
        } else {
            text += ScalarText(at);
        }
    }
    if (isEmpty) text += separator;
    text += isArray ? ']' : '}';
}

const char* TypeName(bson_type_t type) {
    static constexpr const char* kNames[] = {
        "",          "double",     "string",    "object",
        "array",     "binData",    "undefined", "objectId",
        "bool",      "date",       "null",      "regex",
        "dbPointer", "javascript", "symbol",    "javascriptWithScope",
        "int",       "timestamp",  "long",      "decimal"};
    return type == BSON_TYPE_MINKEY ? "minKey" : type == BSON_TYPE_MAXKEY ? "maxKey" : kNames[type];
}

/// Adds a row for each element of a document, and of the documents in it: at most 100 levels.
// NOLINTNEXTLINE(misc-no-recursion)
void AddRows(bson_iter_t at, const char* file, const std::string& indent, StringCells& cells) {
    while (bson_iter_next(&at)) {
        const std::string_view element = ElementOf(at);
        const bson_type_t type = bson_iter_type(&at);
        cells.rows.push_back({std::to_string(element.data() - file), std::to_string(element.size()),
                              TypeName(type), indent + bson_iter_key(&at),
                              HoldsElements(at) ? "" : Cut(ScalarText(at), 60)});
        bson_iter_t child;
        if (HoldsElements(at) && bson_iter_recurse(&at, &child))
            AddRows(child, file, indent + "  ", cells);
    }
}

/// Returns the size of the document that `bytes` begin with. Throws vxJson::Error with the offset
/// of what is broken.
std::size_t CheckedSize(std::string_view bytes) {
    std::size_t size = 0;
    for (std::size_t i = 0; i < 4 && i < bytes.size(); ++i)
        size |= static_cast<std::size_t>(static_cast<unsigned char>(bytes[i])) << (8 * i);
    if (bytes.size() < 5 || size < 5 || size > bytes.size())
        throw vxJson::Error("offset 0: not a document of " + std::to_string(size) + " bytes, " +
                            std::to_string(bytes.size()) + " are left");
    bson::Decode(bytes.data(), size);
    return size;
}

/// Returns an error of the BSON library with its offset counted from the start of the file.
std::string AbsoluteOffset(const std::string& error, std::size_t begin) {
    static const std::string label = "offset ";
    const std::size_t number = error.find(label) + label.size();
    const std::size_t end = error.find(':', number);
    if (error.find(label) == error.npos || end == error.npos) return error;
    return "byte " + std::to_string(begin + std::stoull(error.substr(number))) + error.substr(end);
}

}  // namespace

int Bson(const Options& options) {
    const std::string& path = options.input;
    CheckPaths({path}, {options.output});
    const std::string bytes = ReadFile(path);
    Output output(options.output, options.debug ? Content::kSafe : Content::kJson);
    Sink sink([&](std::string_view text) { output.Write(text); });
    std::string error;
    int count = 0;
    for (std::size_t begin = 0, size = 0; begin < bytes.size(); begin += size, sink.Check()) {
        const std::string number = std::to_string(++count);
        try {
            size = CheckedSize(std::string_view(bytes).substr(begin));
        } catch (const vxJson::Error& broken) {
            error = "document " + number + ": " + AbsoluteOffset(broken.what(), begin);
            break;
        }
        bson_iter_t at;
        bson_iter_init_from_data(&at, reinterpret_cast<const std::uint8_t*>(&bytes[begin]), size);
        if (options.debug) {
            StringCells cells;
            cells.rows = {{"offset", "size", "type", "name", "value"}};
            AddRows(at, bytes.data(), "", cells);
            sink.text += (count == 1 ? "document " : "\ndocument ") + number + ", " +
                         std::to_string(size) + " bytes\n\n";
            DrawTable(cells, Screen::Of(options), sink);
        } else {
            std::string text;
            AppendText(at, false, text);
            sink.text += text + '\n';
        }
    }
    sink.Flush();
    Output::Complete(output);
    if (!error.empty()) PrintError(DisplayName(path) + ": " + error);
    return error.empty() ? 0 : 1;
}

#else

int Bson(const Options&) {
    throw UsageError("this build has no BSON");
}

#endif

}  // namespace dataengine::tool
