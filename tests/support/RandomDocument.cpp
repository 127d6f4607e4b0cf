#include "tests/support/RandomDocument.h"

#include <iterator>

using rapidjson::SizeType;
using rapidjson::Value;

rapidjson::Document& RandomDocument::Next() {
    rapidjson::Document().Swap(document_);
    document_.SetArray();
    for (std::uint64_t left = Below(6); left > 0; --left)
        document_.PushBack(Below(3) == 0 ? Table() : Item(static_cast<int>(Below(50)) - 39),
                           Pool());
    return document_;
}

Value RandomDocument::Str(const std::string& bytes) {
    return Value(bytes.data(), static_cast<SizeType>(bytes.size()), Pool());
}

Value RandomDocument::Name() {
    constexpr const char* kNames[] = {"a", "b", "a.b", "", "$", "$a", "$$a", "a/\"\xff\n"};
    return Str(kNames[Below(std::size(kNames))]);
}

Value RandomDocument::Any(int depth) {
    // Few elements or bytes, or as many as change the packed form.
    constexpr SizeType kEdges[] = {15, 16, 31, 32, 255, 256};
    const auto size = Below(40) > 0 ? static_cast<SizeType>(Below(5)) : kEdges[Below(6)];
    Value value(Below(2) == 0 ? rapidjson::kArrayType : rapidjson::kObjectType);
    switch (Below(depth > 0 ? 9 : 7)) {
        case 0:
            return Value(Below(2) == 0);
        case 1:
            return Value(std::uint64_t{engine_() >> Below(64)});
        case 2:
            return Value(-1 - static_cast<std::int64_t>(engine_() >> (1 + Below(63))));
        case 3:
            return Value(static_cast<double>(engine_() >> (11 + Below(53))) / 100);
        case 4:
            return Value(-static_cast<double>(Below(3)));
        case 5: {
            std::string bytes(size, ' ');
            for (char& byte : bytes) byte = static_cast<char>(engine_());
            return Str(bytes);
        }
        case 6:
            return Value();
        default:
            for (SizeType i = 0; i < size; ++i) {
                if (value.IsArray())
                    value.PushBack(Any(depth - 1), Pool());
                else
                    value.AddMember(Name(), Any(depth - 1), Pool());
            }
            return value;
    }
}

Value RandomDocument::Item(int type) {
    Value item(rapidjson::kObjectType);
    item.AddMember("type", type, Pool()).AddMember("name", Name(), Pool());
    if (type != 11) item.AddMember("value", Any(4), Pool());
    return item;
}

Value RandomDocument::Children() {
    Value children(rapidjson::kArrayType);
    for (std::uint64_t left = Below(5); left > 0; --left)
        children.PushBack(Item(static_cast<int>(Below(13))), Pool());
    return children;
}

Value RandomDocument::Table() {
    constexpr const char* kHashColumns[] = {"null",
                                            "18446744073709551615",
                                            "-1.5",
                                            "1e+21",
                                            R"(["a","\u0000/\n"])",
                                            R"({"$binary":{"base64":"/w==","subType":"00"}})",
                                            R"({"a":[{"b":""},[true]]})"};
    Value table = Item(11);
    table.AddMember("column", Children(), Pool())
        .AddMember("hashSort", Below(2) == 0, Pool())
        .AddMember("hashColumns", Str(kHashColumns[Below(7)]), Pool())
        .AddMember("attributes", Children(), Pool());
    return table;
}
