// Renames the variables of a document through a mapping and compares the result with a plain
// implementation. The input consists of the parser path, the mapping and the document as JSON text,
// separated by zero bytes. Each line of the mapping holds key path, key name, value path and value
// name, separated by tabs.

#include <sstream>

#include "bench/PlainRenaming.h"
#include "fuzz/Fuzz.h"
#include "structure/CDEStructureDataHelper.h"
#include "tests/support/Texts.h"

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
    const auto mapping = MappingOf(parts[1]);
    const auto rename = [&](const auto& run) {
        rapidjson::Document document;
        document.Parse<rapidjson::kParseNanAndInfFlag>(parts[2].c_str());
        std::vector<std::string> items = {"first"};
        run(mapping, parts[0], document, items);
        items.push_back(document.HasParseError() ? "" : Text(document));
        return items;
    };
    Require(rename(CDEStructureDataHelper::PostDataProcessing) == rename(PlainRenaming::Run),
            "other names");
    return 0;
}
