// Random input through the library and by way of text. Each seed is fixed; where a comparison
// fails, its message names the input.

#include "tests/support/BothDecoders.h"

#include "tests/support/RandomPacked.h"
#include "tests/support/Texts.h"

namespace {

/// Packed bytes, two in five of them spoiled after the fact.
std::string SoundOrBroken(RandomPacked& random) {
    std::string bytes = random.Value();
    if (random.OneIn(4)) bytes = random.Mutated(bytes);
    if (random.OneIn(5)) bytes = random.Cut(bytes + '\0');
    return bytes;
}

TEST(BothDecoders, GiveTheSameValues) {
    RandomPacked random(1);
    for (int i = 0; i < 20000; ++i)
        ASSERT_TRUE(SameValueOnBothDecoders(SoundOrBroken(random))) << i;
}

TEST(BothDecoders, ReadTheSameHeaders) {
    const std::string names[] = {Hex("a1 78"), Hex("c4 02 78 00"), Hex("a0"), Hex("d9 00")};
    RandomPacked random(2);
    for (int i = 0; i < 3000; ++i) {
        const std::string version = random.OneIn(20) ? random.Value() : "\x01";
        const std::string name = random.OneIn(20) ? random.Value() : names[random.Below(4)];
        ASSERT_TRUE(SameHeaderOnBothDecoders(version + name + SoundOrBroken(random))) << i;
    }
}

/// Schemas, offsets and selections as JSON texts over few names, so that they meet, and with some
/// members of kinds that don't belong there.
class RandomTexts {
  public:
    explicit RandomTexts(RandomPacked& random) : random_(random) {}

    std::string Schema(bool withTables = true) {
        return List([&] { return Item(withTables); });
    }
    std::string Offsets(std::uint64_t length) {
        const auto offset = [=] {
            return OrOdd(60, std::to_string(random_.OneIn(3) ? random_.Below(length + 2) : 0));
        };
        return List([&] { return random_.OneIn(2) ? List(offset) : offset(); });
    }
    std::string Selection() {
        if (random_.OneIn(3)) return "null";
        return List([&] {
            if (random_.OneIn(2)) return Name();
            return "{\"table\":" + Name() + Names("column") + Names("attributes") + "}";
        });
    }

  private:
    template <typename Element>
    std::string List(const Element& element) {
        std::string text = "[";
        for (std::uint64_t left = random_.Below(7); left > 0; --left)
            text += element() + (left > 1 ? "," : "");
        return OrOdd(40, text + "]");
    }
    std::string OrOdd(std::uint64_t chances, const std::string& text) {
        constexpr const char* kOdd[] = {"null", "-1", "2.0", "0.5", "true", "\"x\"", "{}", "99"};
        return random_.OneIn(chances) ? kOdd[random_.Below(8)] : text;
    }
    std::string Name() {
        constexpr const char* kNames[] = {"a", "b", "c", "d", "$a", "$$a", "$", "", "a\\u0000b"};
        const char* name = kNames[random_.Below(random_.OneIn(5) ? 9 : 4)];
        return OrOdd(100, '"' + std::string(name) + '"');
    }
    std::string Names(const std::string& key) {
        if (random_.OneIn(2)) return "";
        return ",\"" + key + "\":" + List([&] { return Name(); });
    }
    std::string Item(bool withTables) {
        std::string text = "{\"index\":" + OrOdd(50, std::to_string(random_.Below(6)));
        if (!random_.OneIn(20)) text += ",\"name\":" + Name();
        if (!withTables || random_.OneIn(2))
            return text + ",\"type\":" + OrOdd(50, std::to_string(random_.Below(12))) + "}";
        text += ",\"type\":11,\"column\":" + Schema(false);
        if (random_.OneIn(2)) text += ",\"attributes\":" + Schema(false);
        if (random_.OneIn(2)) text += ",\"hashSort\":true,\"hashColumns\":" + Schema(false);
        return text + "}";
    }

    RandomPacked& random_;
};

TEST(BothDecoders, DecodeTheSameSelections) {
    RandomPacked random(3);
    RandomTexts texts(random);
    for (int i = 0; i < 10000; ++i) {
        const std::string payload = random.OneIn(20) ? SoundOrBroken(random) : random.Value();
        const vxJson::Value schema = Json(texts.Schema());
        const vxJson::Value offsets = Json(texts.Offsets(payload.size()));
        ASSERT_TRUE(SameDecodingOnBothDecoders(payload, schema, offsets, Json(texts.Selection())))
            << i;
    }
}

// More names than a table of the first size remembers, half of them twice, asked for in schema
// order, backwards, and by an odd step.
TEST(BothDecoders, FindTheFirstOfEachNameAmongMany) {
    constexpr int kItems = 150;
    vxJson::Value schema, backwards, stepping;
    for (int i = 0; i < kItems; ++i) {
        schema[i]["name"] = "name" + std::to_string(i % 100);
        schema[i]["type"] = 100 + i;
        backwards[i] = "name" + std::to_string(kItems - i);
        stepping[i] = "name" + std::to_string(7 * i % kItems);
    }
    for (const vxJson::Value& fields : {vxJson::Value(), backwards, stepping})
        EXPECT_TRUE(SameDecodingOnBothDecoders("\x01", schema, Json("[0]"), fields));
}

}  // namespace
