// Names of a document changed through a mapping, by the library and by plain steps. The input holds
// the parser path, the mapping and the document as JSON text, with a zero byte between one and the
// next. The mapping is a line for each entry: key path, key name, value path and value name, with
// a tab between one and the next.

#include <sstream>

#include "fuzz/Fuzz.h"
#include "tests/support/BothDecoders.h"

namespace {

std::map<DDKey, DDKey> MappingOf(const std::string& text) {
    std::map<DDKey, DDKey> mapping;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream fields(line);
        std::string keyPath, keyName, valuePath, valueName;
        std::getline(fields, keyPath, '\t');
        std::getline(fields, keyName, '\t');
        std::getline(fields, valuePath, '\t');
        std::getline(fields, valueName, '\t');
        mapping[DDKey(keyPath, keyName)] = DDKey(valuePath, valueName);
    }
    return mapping;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> parts = SplitAtZeros(InputText(data, size), 3);
    if (!IsShallow(parts[2])) return 0;
    rapidjson::Document document;
    document.Parse<rapidjson::kParseNanAndInfFlag>(parts[2].c_str());
    if (document.HasParseError()) return 0;
    Require(SameRenamingOnBothDecoders(MappingOf(parts[1]), parts[0], document));
    return 0;
}
