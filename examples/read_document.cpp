// Reads one BSON document from standard input, as a store returns it, and prints it as JSON text.
#include <VxUtil/vxJson.h>

#include <cstdio>
#include <iostream>
#include <iterator>
#include <string>

#include "bson/Bson.h"

int main() {
    const std::string bytes(std::istreambuf_iterator<char>(std::cin), {});
    try {
        const vxJson::Value document = dataengine::bson::Decode(bytes.data(), bytes.size());
        std::printf("%s\n", document.toString(false).c_str());
        return 0;
    } catch (const vxJson::Error& error) {
        std::fprintf(stderr, "read_document: %s\n", error.what());
        return 1;
    }
}
