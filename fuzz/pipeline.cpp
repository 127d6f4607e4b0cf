// Takes a frame through all steps: header, decoding, renaming, a result saved and loaded, and a new
// frame of the same items, which must decode to the same document. The input consists of the
// offsets as JSON text, the names for variables and the frame, separated by zero bytes. Each line
// of names holds a wanted name and a variable, separated by a tab.

#include <sstream>

#include "fuzz/Fuzz.h"
#include "query/CDEQueryResultStructureData.h"
#include "tests/support/BothDecoders.h"
#include "tests/support/RoundTrip.h"
#include "tests/support/Texts.h"

namespace {

std::map<DDKey, DDKey> MappingOf(const std::string& text) {
    std::map<DDKey, DDKey> mapping;
    std::istringstream lines(text);
    for (std::string wanted, variable; std::getline(lines, wanted, '\t');) {
        std::getline(lines, variable);
        mapping[DDKey("", wanted)] = DDKey("p", variable);
    }
    return mapping;
}

/// Returns whether the frame has a header, and offsets by which all its items decode.
bool Decode(const std::string& frame, const std::string& offsets, rapidjson::Document& document) {
    const Header header = ReadHeader(frame);
    if (header.ending != "true") return false;
    const auto payload = ExactBuffer(frame.substr(static_cast<std::size_t>(header.offset)));
    return EndingOf([&] {
               return CDEStructureDataHelper::ParseBinaryDataToJson(
                   payload.data(), static_cast<int>(payload.size()), header.schema, Json(offsets),
                   vxJson::Value(), document);
           }) == "true";
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 10000) return 0;  // documents are compared recursively
    const std::vector<std::string> parts = SplitAtZeros(InputText(data, size), 3);
    CDEQueryResultStructureData result;
    rapidjson::Document& document = result.GetData();
    if (!Decode(parts[2], parts[0], document)) return 0;

    std::vector<std::string> items;
    CDEStructureDataHelper::PostDataProcessing(MappingOf(parts[1]), "p", document, items);
    std::string text;
    for (const std::string& item : items) text += (text.empty() ? "" : ",") + item;
    vxJson::Value saved;
    result.SaveToJson(saved);
    Require(saved["data"].asBinary() == "[" + text + "]", "items " + text);

    CDEQueryResultStructureData loaded;
    loaded.LoadFromJson(saved);
    rapidjson::Document parsed;
    parsed.Parse(saved["data"].asBinary().c_str());
    Require(SameDocument(loaded.GetData(), parsed));
    Require(RoundTrips(document));
    return 0;
}
