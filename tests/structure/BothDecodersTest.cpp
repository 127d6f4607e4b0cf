#include "tests/support/BothDecoders.h"

#include <cstdlib>

#include "tests/support/RandomPacked.h"
#include "tests/support/Texts.h"

namespace {

// The seed is fixed; a failing comparison prints its input. DATAENGINE_RANDOM_VALUES sets the
// number of values.
TEST(BothDecoders, DecodeTheSameValues) {
    const char* const wanted = std::getenv("DATAENGINE_RANDOM_VALUES");
    const long count = wanted == nullptr ? 20000 : std::atol(wanted);
    RandomPacked random(1);
    for (long i = 0; i < count; ++i) {
        std::string bytes = random.Value();
        if (random.OneIn(4)) bytes = random.Mutated(bytes);
        if (random.OneIn(5)) bytes.resize(random.Below(bytes.size() + 1));
        if (random.OneIn(4)) bytes += "and bytes after the value, which are not read: 0123456789";
        ASSERT_TRUE(SameValueOnBothDecoders(bytes)) << i;
    }
}

// Every number of names, half of them twice, in schema order, in reverse and by an odd step.
TEST(BothDecoders, FindTheFirstOfEachNameAmongMany) {
    vxJson::Value schema;
    for (int items = 1; items < 150; ++items) {
        vxJson::Value backwards, stepping;
        schema[items - 1]["name"] = "name" + std::to_string(items % 100);
        schema[items - 1]["type"] = 100 + items;
        for (int i = 0; i < items; ++i) {
            backwards[i] = "name" + std::to_string(items - i);
            stepping[i] = "name" + std::to_string(7 * i % items);
        }
        for (const vxJson::Value& fields : {vxJson::Value(), backwards, stepping})
            ASSERT_TRUE(SameDecodingOnBothDecoders("\x01", schema, Json("[0]"), fields));
    }
}

}  // namespace
