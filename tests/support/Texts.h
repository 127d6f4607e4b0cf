#pragma once

#include <VxUtil/vxJson.h>
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

/// Returns the value of a JSON text.
inline vxJson::Value Json(const std::string& text) {
    return vxJson::Parse(text);
}

/// Returns the compact text of a shallow document.
inline std::string Text(const rapidjson::Value& value) {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    value.Accept(writer);
    return {buffer.GetString(), buffer.GetSize()};
}

/// Returns the bytes of hexadecimal digits; blanks are ignored.
inline std::string Hex(const std::string& digits) {
    std::string bytes;
    std::string pair;
    for (const char digit : digits) {
        if (digit == ' ') continue;
        pair += digit;
        if (pair.size() < 2) continue;
        bytes += static_cast<char>(std::stoi(pair, nullptr, 16));
        pair.clear();
    }
    return bytes;
}

/// Returns bytes as hexadecimal digits.
inline std::string HexText(const std::string& bytes) {
    std::string text;
    for (const char byte : bytes) {
        for (const int shift : {4, 0}) text += "0123456789abcdef"[(byte >> shift) & 15];
        text += ' ';
    }
    return text;
}

/// Returns bytes in a buffer that ends with them, so that sanitizers notice a read past the end.
inline std::vector<char> ExactBuffer(const std::string& bytes) {
    return {bytes.begin(), bytes.end()};
}

/// Returns the lowest `count` bytes of a number, most significant first.
inline std::string BigEndian(std::uint64_t number, int count) {
    std::string bytes;
    while (count-- > 0) bytes += static_cast<char>(number >> (8 * count));
    return bytes;
}
