#include "tests/support/RandomDocument.h"

#include <iterator>

rapidjson::Document& RandomDocument::Next() {
    rapidjson::Document().Swap(document_);
    document_.SetArray();
    for (std::uint64_t left = Below(6); left > 0; --left)
        document_.PushBack(Below(3) == 0 ? Table() : Item(static_cast<int>(Below(50)) - 39),
                           document_.GetAllocator());
    return document_;
}

rapidjson::SizeType RandomDocument::Size() {
    constexpr rapidjson::SizeType kEdges[] = {15, 16, 31, 32, 255, 256};
    return Below(40) == 0 ? kEdges[Below(std::size(kEdges))]
                          : static_cast<rapidjson::SizeType>(Below(5));
}

rapidjson::Value RandomDocument::Str(const std::string& bytes) {
    return rapidjson::Value(bytes.data(), static_cast<rapidjson::SizeType>(bytes.size()),
                            document_.GetAllocator());
}

rapidjson::Value RandomDocument::Name() {
    constexpr const char* kNames[] = {"a", "b", "a.b", "", "$", "$a", "$$a", "a/\"\xff\n"};
    return Str(kNames[Below(std::size(kNames))]);
}

rapidjson::Value RandomDocument::Any(int depth) {
    rapidjson::Value value;
    auto& pool = document_.GetAllocator();
    switch (Below(depth > 0 ? 9 : 7)) {
        case 0:
            return rapidjson::Value(Below(2) == 0);
        case 1:
            return rapidjson::Value(std::uint64_t{engine_() >> Below(64)});
        case 2:
            return rapidjson::Value(-1 - static_cast<std::int64_t>(engine_() >> (1 + Below(63))));
        case 3:
            return rapidjson::Value(static_cast<double>(engine_() >> (11 + Below(53))) / 100);
        case 4:
            return rapidjson::Value(-static_cast<double>(Below(3)));
        case 5: {
            std::string bytes(Size(), ' ');
            for (char& byte : bytes) byte = static_cast<char>(engine_());
            return Str(bytes);
        }
        case 6:
            return value;
        case 7:
            value.SetArray();
            for (rapidjson::SizeType left = Size(); left > 0; --left)
                value.PushBack(Any(depth - 1), pool);
            return value;
        default:
            value.SetObject();
            for (rapidjson::SizeType left = Size(); left > 0; --left)
                value.AddMember(Name(), Any(depth - 1), pool);
            return value;
    }
}

rapidjson::Value RandomDocument::Item(int type) {
    auto& pool = document_.GetAllocator();
    rapidjson::Value item(rapidjson::kObjectType);
    item.AddMember("type", type, pool).AddMember("name", Name(), pool);
    if (type != 11) item.AddMember("value", Any(4), pool);
    return item;
}

rapidjson::Value RandomDocument::Children() {
    rapidjson::Value children(rapidjson::kArrayType);
    for (std::uint64_t left = Below(5); left > 0; --left)
        children.PushBack(Item(static_cast<int>(Below(13))), document_.GetAllocator());
    return children;
}

rapidjson::Value RandomDocument::Table() {
    constexpr const char* kHashColumns[] = {"null",
                                            "true",
                                            "18446744073709551615",
                                            "-1.5",
                                            "1e+21",
                                            R"(["a","\u0000/\n"])",
                                            R"({"$binary":{"base64":"/w==","subType":"00"}})",
                                            R"({"a":[{"b":""},[]]})"};
    auto& pool = document_.GetAllocator();
    rapidjson::Value table = Item(11);
    table.AddMember("column", Children(), pool)
        .AddMember("hashSort", Below(2) == 0, pool)
        .AddMember("hashColumns", Str(kHashColumns[Below(std::size(kHashColumns))]), pool)
        .AddMember("attributes", Children(), pool);
    return table;
}
