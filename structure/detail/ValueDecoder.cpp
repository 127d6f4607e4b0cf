#include "structure/detail/ValueDecoder.h"

#include <cstring>
#include <utility>

#include "contracts/detail/rapidjson/ParseJson.h"
#include "structure/detail/PackedPrinter.h"
#include "structure/detail/PackedWalk.h"
#include "structure/detail/ScalarFiller.h"

namespace dataengine::detail {
namespace {

/// Rounds by printing and parsing; returns false for NaN and the infinities.
bool RoundByText(double value, rapidjson::Value& slot, JsonPool& pool) {
    PackedPrinter printer(FloatStyle::kTwoDecimals);
    printer.Float(value);
    return ParseJson(printer.Text().data(), slot, pool);
}

/// Returns whether a JSON string of these bytes denotes them unchanged: they contain no quotation
/// mark, no backslash and no byte below 32.
bool IsPlainText(const char* bytes, std::size_t size) {
    unsigned special = 0;
    for (std::size_t i = 0; i < size; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        special |= unsigned{byte < 32} | unsigned{byte == '"'} | unsigned{byte == '\\'};
    }
    return special == 0;
}

enum class Outcome { kNull, kText };

/// Fills a value and its elements in their final places. A handler of PackedWalk.
class ValueFiller {
  public:
    ValueFiller(rapidjson::Value& root, JsonPool& pool) : slot_(&root), pool_(pool) {}

    /// Returns the outcome of a walk that this handler ended.
    Outcome Ended() const { return ended_; }

    using Context = rapidjson::Value*;  // where the next value after a container goes

    std::uint64_t TakeScalars(PackedBytes& bytes, std::uint64_t remaining, bool isMap) {
        ScalarFiller filler(bytes, slot_, slot_ + remaining, pool_);
        if (isMap) {
            filler.FillMembers();
        } else {
            filler.FillElements();
        }
        bytes = filler.Bytes();
        return static_cast<std::uint64_t>(filler.Slot() - std::exchange(slot_, filler.Slot()));
    }
    bool Element() { return true; }
    bool Key(PackedKind kind) { return kind == PackedKind::kStr || kind == PackedKind::kBin; }
    bool Value() { return true; }

    bool Nil() {
        new (slot_++) rapidjson::Value();
        return true;
    }
    bool Boolean(bool value) {
        new (slot_++) rapidjson::Value(value);
        return true;
    }
    bool Integer(PackedInteger integer) {
        RawValues::MakeInteger(*slot_++, integer.bits, integer.isNegative);
        return true;
    }
    bool Float(double value) {
        double rounded;
        if (!RoundToTwoDecimals(value, rounded)) return RoundByText(value, *slot_++, pool_);
        new (slot_++) rapidjson::Value(rounded);
        return true;
    }
    bool Str(const char* bytes, std::size_t size) {
        RawValues::MakeString(*slot_++, bytes, static_cast<rapidjson::SizeType>(size), pool_);
        return true;
    }
    bool Bin(const char* bytes, std::size_t size) {
        if (IsPlainText(bytes, size)) return Str(bytes, size);
        ended_ = Outcome::kText;
        return false;
    }
    bool Ext() { return false; }

    Context BeginArray(std::uint32_t count) {
        rapidjson::Value* const array = slot_++;
        return std::exchange(slot_, RawValues::MakeArray(*array, count, pool_));
    }
    Context BeginMap(std::uint32_t count) {
        rapidjson::Value* const object = slot_++;
        return std::exchange(slot_, RawValues::MakeObject(*object, count, pool_));
    }
    void EndArray(Context next) { slot_ = next; }
    void EndMap(Context next) { slot_ = next; }

  private:
    rapidjson::Value* slot_;  // where the next value goes
    JsonPool& pool_;
    Outcome ended_ = Outcome::kNull;
};

/// Decodes the value at `begin`, whose filling ended with `outcome` somewhere before the rest of
/// `bytes`.
void DecodeOtherwise(Outcome outcome, const char* begin, PackedBytes& bytes,
                     rapidjson::Value& value, JsonPool& pool) {
    bytes.Rewind(begin);
    new (&value) rapidjson::Value();
    if (outcome == Outcome::kNull) return bytes.Skip();
    PackedPrinter printer(FloatStyle::kTwoDecimals);
    PackedWalk(bytes, printer).Run();
    ParseJson(printer.Text().data(), value, pool);
}

[[gnu::noinline]] void DecodeContainer(PackedBytes& bytes, rapidjson::Value& value,
                                       JsonPool& pool) {
    const char* const begin = bytes.Next();
    ValueFiller filler(value, pool);
    if (PackedWalk(bytes, filler).Run()) return;
    DecodeOtherwise(filler.Ended(), begin, bytes, value, pool);
}

}  // namespace

// Single scalars, as most leaves are, skip the set-up of the walk.
void DecodeValue(PackedBytes& bytes, rapidjson::Value& value, JsonPool& pool) {
    const PackedHead& head = bytes.Head();
    if (head.kind == PackedKind::kArray || head.kind == PackedKind::kMap)
        return DecodeContainer(bytes, value, pool);
    const char* const begin = bytes.Next();
    ValueFiller filler(value, pool);
    if (TakeScalar(bytes, head, filler)) return;
    DecodeOtherwise(filler.Ended(), begin, bytes, value, pool);
}

}  // namespace dataengine::detail
