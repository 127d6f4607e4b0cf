// Gives the items of a decoded document the names that the caller wants, and prints each as JSON.
#include <rapidjson/document.h>

#include <iostream>

#include "structure/CDEStructureDataHelper.h"

int main() {
    // What decoding a frame makes; see read_a_frame.cpp.
    rapidjson::Document document;
    document.Parse(R"([
        {"type": 1, "name": "hostname", "value": "acc-sw-17"},
        {"type": 11, "name": "ifTable",
         "column": [{"type": 1, "name": "ifName", "value": ["Gi0/1"]}],
         "hashSort": true, "hashColumns": "[\"ifName\"]", "attributes": []}])");

    // From the wanted names to the variables of the parser that made the document. A column is
    // table name, ".", column name on both sides.
    const std::string parser = "inventory/interfaces";
    const std::map<DDKey, DDKey> wanted = {
        {DDKey("", "deviceName"), DDKey(parser, "hostname")},
        {DDKey("", "Interfaces.name"), DDKey(parser, "ifTable.ifName")}};

    std::vector<std::string> lines;
    CDEStructureDataHelper::PostDataProcessing(wanted, parser, document, lines);
    for (const std::string& line : lines) std::cout << line << '\n';
}
