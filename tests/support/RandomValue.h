#pragma once

#include <VxUtil/vxJson.h>

#include <cmath>
#include <functional>
#include <random>
#include <string>

/// Returns a random value of at most `depth` levels of containers. Its keys, strings and bytes are
/// results of `text`.
inline vxJson::Value RandomValue(std::mt19937_64& random, int depth,
                                 const std::function<std::string()>& text) {
    using vxJson::Value;
    const auto integer = [&random] { return static_cast<std::int64_t>(random()); };
    switch (random() % (depth > 0 ? 9 : 7)) {
        case 0:
            return {};
        case 1:
            return random() % 2 == 1;
        case 2:
            return integer() >> (random() % 64);
        case 3: {
            const double number = static_cast<double>(integer());
            return std::ldexp(number, static_cast<int>(random() % 2000) - 1080);
        }
        case 4:
            return text();
        case 5:
            return Value::Binary(text());
        case 6:
            return Value::Time(integer());
        default:
            break;
    }
    Value value(random() % 2 == 0 ? vxJson::arrayKind : vxJson::objectKind, false);
    for (auto i = random() % 12; i > 0; --i)
        (value.isArray() ? value.append(Value()) : value[text()]) =
            RandomValue(random, depth - 1, text);
    return value;
}
