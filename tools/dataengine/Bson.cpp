// Prints the BSON documents of a file as Extended JSON, one per line, or their elements with types
// and sizes.
#include "tools/dataengine/Table.h"

#ifdef DATAENGINE_TOOL_BSON
#include <bson/bson.h>

#include <memory>

#include "bson/Bson.h"
#endif

namespace dataengine::tool {

#ifdef DATAENGINE_TOOL_BSON
namespace {

std::string JsonOf(const bson_t& document) {
    const std::unique_ptr<char, decltype(&bson_free)> text(
        bson_as_relaxed_extended_json(&document, nullptr), &bson_free);
    return text.get();
}

/// Returns the text of an element.
std::string ValueText(const bson_iter_t& at) {
    bson_t document = BSON_INITIALIZER;
    bson_append_iter(&document, "", 0, &at);
    const std::string text = JsonOf(document);
    bson_destroy(&document);
    constexpr std::size_t kAround = sizeof "{ \"\" : " - 1;
    return text.substr(kAround, text.size() - kAround - sizeof " }" + 1);
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
void AddRows(bson_iter_t& at, const char* file, const std::string& indent, Rows& rows) {
    while (bson_iter_next(&at)) {
        const bson_type_t type = bson_iter_type(&at);
        const bool isContainer = type == BSON_TYPE_DOCUMENT || type == BSON_TYPE_ARRAY;
        const auto offset = reinterpret_cast<const char*>(at.raw) + at.off - file;
        rows.push_back({std::to_string(offset), std::to_string(at.next_off - at.off),
                        TypeName(type), indent + bson_iter_key(&at),
                        isContainer ? "" : Cut(ValueText(at), 60)});
        bson_iter_t child;
        if (isContainer && bson_iter_recurse(&at, &child))
            AddRows(child, file, indent + "  ", rows);
    }
}

/// Returns the document that `bytes` begin with. Throws vxJson::Error with the offset of what is
/// broken.
bson_t CheckedDocument(std::string_view bytes) {
    constexpr auto kUtf8 =
        static_cast<bson_validate_flags_t>(BSON_VALIDATE_UTF8 | BSON_VALIDATE_UTF8_ALLOW_NULL);
    std::size_t size = 0;
    for (std::size_t i = 0; i < 4 && i < bytes.size(); ++i)
        size |= static_cast<std::size_t>(static_cast<unsigned char>(bytes[i])) << (8 * i);
    if (bytes.size() < 5 || size < 5 || size > bytes.size())
        throw vxJson::Error("byte 0: not a document of " + std::to_string(size) + " bytes, " +
                            std::to_string(bytes.size()) + " are left");
    bson::Decode(bytes.data(), size);
    bson_t document;
    std::size_t offset = 0;
    bson_init_static(&document, reinterpret_cast<const std::uint8_t*>(bytes.data()), size);
    if (!bson_validate(&document, kUtf8, &offset))
        throw vxJson::Error("byte " + std::to_string(offset) + ": a string is not UTF-8");
    return document;
}

/// Returns an error of the BSON library with its offset counted from the start of the file.
std::string AbsoluteOffset(const std::string& error, std::size_t begin) {
    static const std::string label = "byte ";
    const std::size_t number = error.find(label) + label.size();
    const std::size_t end = error.find(':', number);
    if (error.find(label) == error.npos || end == error.npos) return error;
    return "byte " + std::to_string(begin + std::stoull(error.substr(number))) + error.substr(end);
}

}  // namespace

void Bson(const Options& options, Output& output) {
    const std::string bytes = ReadFile(options.input);
    if (options.debug) output.content = Content::kSafe;
    int count = 0;
    bson_t document;
    for (std::size_t begin = 0; begin < bytes.size(); begin += document.len, output.Check()) {
        const std::string number = std::to_string(++count);
        try {
            document = CheckedDocument(std::string_view(bytes).substr(begin));
        } catch (const vxJson::Error& broken) {
            std::string error = "document ";
            error.append(number).append(": ").append(AbsoluteOffset(broken.what(), begin));
            return output.Report(Failure(options.input, error).what());
        }
        bson_iter_t at;
        bson_iter_init(&at, &document);
        if (options.debug) {
            Rows rows = {{"offset", "size", "type", "name", "value"}};
            AddRows(at, bytes.data(), "", rows);
            output.text += (count == 1 ? "document " : "\ndocument ") + number + ", " +
                           std::to_string(document.len) + " bytes\n\n";
            DrawTable(rows, Screen(options), output);
        } else {
            output.text += JsonOf(document) + '\n';
        }
    }
}

#else

void Bson(const Options&, Output&) {
    throw UsageError("this build has no BSON");
}

#endif

}  // namespace dataengine::tool
