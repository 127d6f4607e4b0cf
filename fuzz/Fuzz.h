#pragma once

#include <VxUtil/vxJson.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

/// Aborts unless `result` is a success, so that the fuzzer keeps the input.
inline void Require(const testing::AssertionResult& result) {
    if (result) return;
    std::fprintf(stderr, "%s\n", result.message());
    std::abort();
}

inline void Require(bool holds, const std::string& what) {
    if (!holds) Require(testing::AssertionFailure() << what);
}

/// Splits `input` at its first zero bytes into `count` parts; the last part keeps all further zero
/// bytes.
inline std::vector<std::string> SplitAtZeros(const std::string& input, std::size_t count) {
    std::vector<std::string> parts;
    std::size_t begin = 0;
    while (parts.size() + 1 < count) {
        const std::size_t end = std::min(input.find('\0', begin), input.size());
        parts.push_back(input.substr(begin, end - begin));
        begin = std::min(end + 1, input.size());
    }
    parts.push_back(input.substr(begin));
    return parts;
}

/// Returns the value of a JSON text, or null if it is not JSON.
inline vxJson::Value JsonOrNull(const std::string& text) {
    try {
        return vxJson::Parse(text);
    } catch (const vxJson::Error&) {
        return {};
    }
}

/// Returns whether `text` is shallow enough for rapidjson's recursive operations.
inline bool IsShallow(const std::string& text) {
    constexpr std::ptrdiff_t kGreatestDepth = 500;
    return std::count_if(text.begin(), text.end(),
                         [](char byte) { return byte == '[' || byte == '{'; }) <= kGreatestDepth;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

inline std::string InputText(const std::uint8_t* data, std::size_t size) {
    return std::string(data, data + size);
}
