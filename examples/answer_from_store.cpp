// Decodes a packed frame: its header, the selected values, and the names that the caller wants.
#include <VxUtil/vxJson.h>

#include <climits>
#include <map>

#include "examples/Example.h"
#include "structure/CDEStructureDataHelper.h"

namespace {

const char usage[] = R"(usage: answer_from_store FRAME OFFSETS [SELECTION [MAPPING]]

Prints the name and the schema of a packed frame, its decoded document, and the items under the names
of a mapping, each as one line of JSON.
  FRAME       the packed frame
  OFFSETS     JSON: where each value begins, counted from the end of the schema
  SELECTION   JSON: null for everything, or an array of names and of tables, as in
              ["hostname", {"table": "ifTable", "column": ["ifName"], "attributes": []}]
  MAPPING     JSON: the wanted names and the names that they stand for, as in
              {"deviceName": "hostname", "Interfaces.name": "ifTable.ifName"}
make_sample_frame writes a FRAME and its OFFSETS.
)";

// [a structured answer out of the store]
using Names = std::map<DDKey, DDKey>;
using Lines = std::vector<std::string>;

struct Frame {
    std::string bytes;
    std::string name;
    vxJson::Value schema;
    int headerLength = 0;
};

/// Reads the header of a frame; false if the frame is of another version.
bool readHeader(Frame& frame) {
    return CDEStructureDataHelper::GetBinaryDataInfo(frame.bytes, frame.name, frame.schema,
                                                     frame.headerLength);
}

/// Decodes what is selected. The offsets count from the end of the header.
bool decode(const Frame& frame, const vxJson::Value& offsets, const vxJson::Value& selection,
            rapidjson::Document& document) {
    const char* payload = frame.bytes.data() + frame.headerLength;
    const int length = static_cast<int>(frame.bytes.size()) - frame.headerLength;
    return CDEStructureDataHelper::ParseBinaryDataToJson(payload, length, frame.schema, offsets,
                                                         selection, document);
}

/// Gives the document its wanted names, and each of its items as one line of JSON.
Lines renameItems(const Names& wanted, const std::string& parserPath,
                  rapidjson::Document& document) {
    Lines lines;
    CDEStructureDataHelper::PostDataProcessing(wanted, parserPath, document, lines);
    return lines;
}
// [end]

Frame readFrame(const std::string& path) {
    Frame frame;
    frame.bytes = example::readFile(path);
    if (frame.bytes.size() > INT_MAX)
        throw example::Failure(path + ": is 2 GiB or larger; a frame is smaller than that");
    const bool known = example::explain(path, "it is cut off or no packed frame; fetch it again",
                                        [&] { return readHeader(frame); });
    if (!known)
        throw example::Failure(path + ": has a version other than 1; get a frame of version 1");
    if (!frame.schema.isArray())
        throw example::Failure(path + ": its schema is no array; let its writer pack one");
    return frame;
}

/// The wanted names as keys, the parser's variables as values. The parser is the one whose path the
/// frame bears as its name.
Names readMapping(const std::string& path, const std::string& parserPath) {
    const rapidjson::Document mapping = example::parseJson(path, example::readFile(path));
    const std::string form = "write {\"wanted name\": \"variable\", ...}";
    if (!mapping.IsObject()) throw example::Failure(path + ": is no object; " + form);
    Names names;
    for (const auto& member : mapping.GetObject()) {
        const std::string wanted = member.name.GetString();
        if (!member.value.IsString())
            throw example::Failure(path + ": \"" + wanted + "\" is no text; " + form);
        names[DDKey("", wanted)] = DDKey(parserPath, member.value.GetString());
    }
    return names;
}

std::string answerFromStore(const example::Arguments& arguments) {
    const Frame frame = readFrame(arguments[0]);
    const vxJson::Value offsets = example::readJson(arguments[1]);
    if (!offsets.isArray())
        throw example::Failure(arguments[1] +
                               ": is no array; take the offsets written with the frame");
    const vxJson::Value selection =
        arguments.size() > 2 ? example::readJson(arguments[2]) : vxJson::Value();
    if (!selection.isNull() && !selection.isArray())
        throw example::Failure(arguments[2] +
                               ": is neither an array nor null; see answer_from_store --help");
    const Names wanted = arguments.size() > 3 ? readMapping(arguments[3], frame.name) : Names();

    rapidjson::Document document;
    const bool decoded =
        example::explain(arguments[0],
                         "see that " + arguments[1] +
                             " belongs to it, and that the selection names tables as objects",
                         [&] { return decode(frame, offsets, selection, document); });
    if (!decoded)
        throw example::Failure(arguments[0] + ": its schema names nothing; select by name");

    std::ostringstream out;
    out << "name\n  " << frame.name << "\n\nschema (header of " << frame.headerLength
        << " bytes)\n";
    for (int i = 0; i < static_cast<int>(frame.schema.size()); ++i)
        out << "  " << frame.schema[i].toString(false) << "\n";
    out << "\ndocument\n";
    for (const std::string& line : renameItems({}, frame.name, document))
        out << "  " << line << "\n";
    out << "\nitems under the wanted names\n";
    for (const std::string& line : renameItems(wanted, frame.name, document))
        out << "  " << line << "\n";
    return out.str();
}

}  // namespace

int main(int argc, char** argv) {
    return example::run(argc, argv, usage, 2, 4, answerFromStore);
}
