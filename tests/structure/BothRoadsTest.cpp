// Random input through the library and by way of text. Each seed is fixed; where a comparison
// fails, its message names the input.

#include "tests/support/BothRoads.h"

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

TEST(BothRoads, GiveTheSameValues) {
    constexpr int kValues = 20000;
    RandomPacked random(1);
    for (int i = 0; i < kValues; ++i) ASSERT_TRUE(SameValueOnBothRoads(SoundOrBroken(random))) << i;
}

TEST(BothRoads, ReadTheSameHeaders) {
    constexpr int kHeaders = 3000;
    const std::string names[] = {Hex("a1 78"), Hex("c4 02 78 00"), Hex("a0"), Hex("d9 00")};
    RandomPacked random(2);
    for (int i = 0; i < kHeaders; ++i) {
        std::string version = random.OneIn(20) ? random.Value() : "\x01";
        std::string name = random.OneIn(20) ? random.Value() : names[random.Below(4)];
        const std::string blob = version + name + SoundOrBroken(random);
        ASSERT_TRUE(SameHeaderOnBothRoads(blob)) << i;
    }
}

/// Schemas, offsets and selections as JSON texts over few names, so that they meet, and with some
/// members of kinds that don't belong there.
class RandomTexts {
  public:
    explicit RandomTexts(RandomPacked& random) : random_(random) {}

    std::string Schema(bool withTables) {
        return List([&] { return Item(withTables); });
    }
    std::string Offsets(std::uint64_t length) {
        return List([&] {
            const auto offset = [&] { return Offset(length); };
            return random_.OneIn(2) ? List(offset) : offset();
        });
    }
    std::string Selection() {
        if (random_.OneIn(3)) return "null";
        return List([&] { return random_.OneIn(2) ? Name() : Entry(); });
    }

  private:
    template <typename Element>
    std::string List(const Element& element) {
        if (random_.OneIn(40)) return Odd();
        std::string text = "[";
        for (std::uint64_t left = random_.Below(7); left > 0; --left)
            text += element() + (left > 1 ? "," : "");
        return text + "]";
    }
    std::string Name() {
        constexpr const char* kNames[] = {"a", "b", "c", "d", "$a", "$$a", "$", "", "a\\u0000b"};
        if (random_.OneIn(100)) return Odd();
        return '"' + std::string(kNames[random_.Below(random_.OneIn(5) ? 9 : 4)]) + '"';
    }
    std::string Item(bool withTables) {
        std::string text = "{";
        if (!random_.OneIn(20)) text += "\"name\":" + Name() + ",";
        if (withTables && random_.OneIn(2)) {
            text += "\"column\":" + Schema(false) + ",";
            if (random_.OneIn(2)) text += "\"attributes\":" + Schema(false) + ",";
            if (random_.OneIn(2))
                text += "\"hashSort\":true,\"hashColumns\":" + Schema(false) + ",";
            text += "\"type\":11,";
        } else {
            text +=
                "\"type\":" + (random_.OneIn(50) ? Odd() : std::to_string(random_.Below(12))) + ",";
        }
        return text +
               "\"index\":" + (random_.OneIn(50) ? Odd() : std::to_string(random_.Below(6))) + "}";
    }
    std::string Entry() {
        std::string text = "{\"table\":" + Name();
        if (random_.OneIn(2)) text += ",\"column\":" + List([&] { return Name(); });
        if (random_.OneIn(2)) text += ",\"attributes\":" + List([&] { return Name(); });
        return text + "}";
    }
    std::string Offset(std::uint64_t length) {
        if (random_.OneIn(60)) return Odd();
        return random_.OneIn(3) ? std::to_string(random_.Below(length + 2)) : "0";
    }
    std::string Odd() {
        constexpr const char* kOdd[] = {"null",  "-1", "2.0", "0.5", "true",
                                        "\"x\"", "{}", "[0]", "99"};
        return kOdd[random_.Below(9)];
    }

    RandomPacked& random_;
};

TEST(BothRoads, DecodeTheSameSelections) {
    constexpr int kUnits = 10000;
    RandomPacked random(3);
    RandomTexts texts(random);
    for (int i = 0; i < kUnits; ++i) {
        const std::string payload = random.OneIn(20) ? SoundOrBroken(random) : random.Value();
        const vxJson::Value schema = Json(texts.Schema(true));
        const vxJson::Value offsets = Json(texts.Offsets(payload.size()));
        ASSERT_TRUE(SameDecodingOnBothRoads(payload, schema, offsets, Json(texts.Selection())))
            << i;
    }
}

}  // namespace
