// Renames the items of a decoded document as a caller wants them, and prints each as JSON.
#include <rapidjson/document.h>

#include <iostream>

#include "structure/CDEStructureDataHelper.h"

int main() {
    // A document as decoded from a frame; see read_a_frame.cpp.
    rapidjson::Document document;
    document.Parse(R"([
        {"type": 1, "name": "hostname", "value": "acc-sw-17"},
        {"type": 11, "name": "ifTable",
         "column": [{"type": 1, "name": "ifName", "value": ["Gi0/1"]}],
         "hashSort": true, "hashColumns": "[\"ifName\"]", "attributes": []}])");

    // Maps the wanted names to the variables of the parser that produced the document. A column is
    // written as table name, ".", column name on both sides.
    const std::string parser = "inventory/interfaces";
    const std::map<DDKey, DDKey> wanted = {
        {DDKey("", "deviceName"), DDKey(parser, "hostname")},
        {DDKey("", "Interfaces.name"), DDKey(parser, "ifTable.ifName")}};

    std::vector<std::string> lines;
    CDEStructureDataHelper::PostDataProcessing(wanted, parser, document, lines);
    for (const std::string& line : lines) std::cout << line << '\n';
}
