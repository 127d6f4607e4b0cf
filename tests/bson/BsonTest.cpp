#include "bson/Bson.h"

#include <bson/bson.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <random>

#include "descriptors/CDEDeviceInfo.h"
#include "descriptors/CDEDeviceMetadata.h"
#include "query/CDEDeviceDataQueryInfo.h"
#include "query/CDEQueryResultRawDataPlusMetaData.h"
#include "query/CDEQueryResultStructureData.h"
#include "query/CDEStructureQueryInfo.h"
#include "query/CDETableQueryInfo.h"
#include "tests/support/RandomValue.h"
#include "tests/support/Rows.h"
#include "tests/support/Texts.h"

using vxJson::Value;

namespace {

const std::uint8_t* Data(const std::string& bytes) {
    return reinterpret_cast<const std::uint8_t*>(bytes.data());
}

/// The document in `bytes`, as libbson sees it.
bson_t View(const std::string& bytes) {
    bson_t document;
    bson_init_static(&document, Data(bytes), bytes.size());
    return document;
}

/// The bytes that libbson writes for a text.
std::string Written(const std::string& text) {
    bson_t document;
    bson_error_t error{};
    if (!bson_init_from_json(&document, text.data(), static_cast<ssize_t>(text.size()), &error))
        throw std::invalid_argument(text + ": " + error.message);
    const std::uint8_t* const bytes = bson_get_data(&document);
    const std::string written(bytes, bytes + document.len);
    bson_destroy(&document);
    return written;
}

Value Decode(const std::string& bytes) {
    return dataengine::bson::Decode(bytes.data(), bytes.size());
}

/// The message of the error that `operation` throws, without the name of the function; "" if it
/// throws none.
std::string ErrorOf(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const vxJson::Error& error) {
        const std::string message = error.what();
        return message.substr(message.find(": ") + 2);
    }
    return "";
}

Value Nested(std::size_t levels) {
    std::string text;
    for (std::size_t i = 1; i < levels; ++i) text += i % 2 == 1 ? "{\"a\":" : "[";
    text += levels % 2 == 1 ? "{}" : "[]";
    for (std::size_t i = levels; --i > 0;) text += i % 2 == 1 ? "}" : "]";
    return Json(text);
}

TEST(Bson, WritesWhatLibbsonWrites) {
    for (const auto& row : RowsOf(TEST_DATA "/documents.txt")) {
        const std::string bytes = dataengine::bson::Encode(Json(row[0]));
        EXPECT_EQ(bytes, Hex(row[1])) << row[0];
        EXPECT_EQ(bytes, Written(row[0])) << row[0];
        EXPECT_EQ(Decode(bytes), Json(row[0])) << row[0];
    }
}

TEST(Bson, RoundTripsAreEqual) {
    std::mt19937_64 random(30);
    const auto text = [&random] {
        return std::string(random() % 40, static_cast<char>(1 + random() % 127)) + "ü";
    };
    for (int i = 0; i < 2000; ++i) {
        Value value(vxJson::objectKind, false);
        value["$v.alue"] = RandomValue(random, 4, text);
        const std::string bytes = dataengine::bson::Encode(value);
        ASSERT_EQ(Decode(bytes), value);
        ASSERT_EQ(bytes, Written(value.toString(false))) << value;
        const bson_t document = View(bytes);
        constexpr int flags = BSON_VALIDATE_UTF8 | BSON_VALIDATE_UTF8_ALLOW_NULL;
        ASSERT_TRUE(bson_validate(&document, static_cast<bson_validate_flags_t>(flags), nullptr))
            << value;
    }
}

TEST(Bson, ReadsEveryType) {
    for (const auto& row : RowsOf(TEST_DATA "/foreign.txt")) {
        const Value expected = Json(row[1] == "=" ? row[0] : row[1]);
        // Rows of bytes hold a $scope, which libbson cannot read from text if it is big endian.
        const std::string bytes = row[0][0] == '{' ? Written(row[0]) : Hex(row[0]);
        EXPECT_EQ(Decode(bytes), expected) << row[0];
    }
}

template <typename T>
Value LoadAndSave(const Value& form) {
    T object;
    object.LoadFromJson(form);
    Value saved;
    object.SaveToJson(saved);
    return saved;
}

// A client prints documents in three forms of JSON.
TEST(Bson, ClientTextsOfEveryClassLoadBack) {
    const std::map<std::string, Value (*)(const Value&)> classes = {
        {"CDEDeviceDataQueryInfo", LoadAndSave<CDEDeviceDataQueryInfo>},
        {"CDEDeviceInfo", LoadAndSave<CDEDeviceInfo>},
        {"CDEDeviceMetadata", LoadAndSave<CDEDeviceMetadata>},
        {"CDEQueryResultRawDataPlusMetaData", LoadAndSave<CDEQueryResultRawDataPlusMetaData>},
        {"CDEQueryResultStructureData", LoadAndSave<CDEQueryResultStructureData>},
        {"CDEStructureQueryInfo", LoadAndSave<CDEStructureQueryInfo>},
        {"CDETableQueryInfo", LoadAndSave<CDETableQueryInfo>},
        {"any", [](const Value& form) { return form; }}};
    for (const auto& row : RowsOf(TEST_DATA "/classes.txt")) {
        const Value document = classes.at(row[0])(Json(row[1]));
        EXPECT_EQ(document, Json(row[1]));
        const std::string bytes = dataengine::bson::Encode(document);
        const bson_t stored = View(bytes);
        for (const auto print :
             {bson_as_canonical_extended_json, bson_as_relaxed_extended_json, bson_as_json}) {
            const std::unique_ptr<char, void (*)(void*)> text(print(&stored, nullptr), bson_free);
            EXPECT_EQ(Json(text.get()), document) << text.get();
        }
    }
}

TEST(Bson, ErrorsNameThePath) {
    for (const auto& row : RowsOf(TEST_DATA "/errors.txt")) {
        const Value value = Json(row[0]);
        EXPECT_EQ(ErrorOf([&] { dataengine::bson::Encode(value); }), row[1]) << row[0];
    }
    for (const char* text : {"\xff", "caf\xe9", "\xc0\x80", "\xed\xa0\x80"}) {
        Value value;
        value["k"].append(text);
        EXPECT_EQ(ErrorOf([&] { dataengine::bson::Encode(value); }),
                  "k[0]: the string is not UTF-8");
        value["k"][0] = Value::Binary(text);
        EXPECT_EQ(Decode(dataengine::bson::Encode(value)), value);
        value["k"][0] = Value();
        value["k"][0][text] = 1;
        EXPECT_EQ(ErrorOf([&] { dataengine::bson::Encode(value); }),
                  std::string("k[0].") + text + ": the key is not UTF-8");
    }
}

TEST(Bson, KeepsTheLimitsOfTheStore) {
    const Value deepest = Nested(dataengine::bson::kMaxLevels);
    const std::string bytes = dataengine::bson::Encode(deepest);
    EXPECT_EQ(Decode(bytes), deepest);
    for (const std::size_t levels : {dataengine::bson::kMaxLevels + 1, std::size_t{1000000}}) {
        const std::string error = ErrorOf([=] { dataengine::bson::Encode(Nested(levels)); });
        EXPECT_EQ(error.substr(0, 7) + error.substr(error.size() - 30),
                  "a[0].a[: nests deeper than 100 levels");
    }
    std::string deeper = "\x03" + std::string("a", 2) + bytes + std::string(1, '\0');
    deeper.insert(0,
                  BigEndian(__builtin_bswap32(static_cast<std::uint32_t>(deeper.size() + 4)), 4));
    EXPECT_EQ(ErrorOf([&] { Decode(deeper); }), "byte 700: nests deeper than 100 levels");

    Value large;
    large["a"] = Value::Binary(std::string(dataengine::bson::kMaxSize - 13, 'x'));
    EXPECT_EQ(dataengine::bson::Encode(large).size(), dataengine::bson::kMaxSize);
    large["b"];
    EXPECT_EQ(ErrorOf([&] { dataengine::bson::Encode(large); }),
              "b: the document exceeds 16777199 bytes");
    // One byte too many: the zero byte at the end of the document.
    large = Value();
    large["a"] = Value::Binary(std::string(dataengine::bson::kMaxSize - 12, 'x'));
    EXPECT_EQ(ErrorOf([&] { dataengine::bson::Encode(large); }),
              "a: the document exceeds 16777199 bytes");
}

TEST(Bson, RejectsBrokenBytes) {
    for (const auto& row : RowsOf(TEST_DATA "/broken.txt")) {
        const std::string bytes = Hex(row[0]);
        const std::string error = ErrorOf([&] { Decode(bytes); });
        EXPECT_EQ(error.substr(0, error.find(": ")), "byte " + row[1]) << row[0] << ": " << error;
    }
    const std::string empty = Hex("05000000 00");
    EXPECT_EQ(ErrorOf([&] { dataengine::bson::Decode(empty.data(), (1ULL << 32) + 5); }),
              "byte 0: not a document of 4294967301 bytes");
    const std::string whole = Written(
        R"({"a":"text","b":[1,{"$binary":{"base64":"YQ==","subType":"02"}},{"c":{"$oid":"0123456789abcdef01234567"}}],
            "d":{"$code":"c","$scope":{"e":{"$numberDecimal":"1"}}},"f":{"$dbPointer":{"$ref":"r","$id":{"$oid":"0123456789abcdef01234567"}}}})");
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_NE(ErrorOf([&] { Decode(whole.substr(0, size)); }), "") << size;
        for (const char byte : {'\0', '\x01', '\x7f', '\xff'}) {
            std::string damaged = whole;
            damaged[size] = byte;
            const std::string error = ErrorOf([&] {
                const Value value = Decode(damaged);
                EXPECT_EQ(Decode(dataengine::bson::Encode(value)), value) << size;
            });
            EXPECT_EQ(error.find("byte "), error.empty() ? error.npos : 0) << size << ": " << error;
        }
    }
}

}  // namespace
