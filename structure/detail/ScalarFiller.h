#pragma once

#include "contracts/detail/rapidjson/RawValues.h"
#include "structure/detail/PackedBytes.h"
#include "structure/detail/TwoDecimals.h"

namespace dataengine::detail {

/// Fills consecutive values of an array or a map with packed scalars in tight loops. It stops
/// before anything else: a container, a bin, an ext, a long string, a float that must be rounded by
/// way of text, a key that is not a short string, the last bytes of the input.
///
/// Compared with the general walk, an interface table decodes 1.6 times as fast, a route table 1.9,
/// integers 1.7 and floats 3 times. The filler is local to one function and stays in registers.
class ScalarFiller {
  public:
    ScalarFiller(const PackedBytes& bytes, rapidjson::Value* first, rapidjson::Value* end,
                 JsonPool& pool)
        : bytes_(bytes), slot_(first), end_(end), pool_(pool) {}

    const PackedBytes& Bytes() const { return bytes_; }
    rapidjson::Value* Slot() const { return slot_; }

    void FillElements() {
        while (HasNext()) {
            switch (bytes_.PeekHead().kind) {
                case PackedKind::kInteger:
                    do FillInteger();
                    while (NextIs(PackedKind::kInteger));
                    break;
                case PackedKind::kFloat64:
                    do {
                        if (!FillFloat()) return;
                    } while (NextIs(PackedKind::kFloat64));
                    break;
                case PackedKind::kStr:
                    do {
                        if (!FillShortString()) return;
                    } while (NextIs(PackedKind::kStr));
                    break;
                default:
                    if (!FillConstant()) return;
            }
        }
    }

    /// Fills names and values in turn; an odd number of slots begins with a value.
    void FillMembers() {
        bool isValue = (end_ - slot_) % 2 != 0;
        for (; HasNext(); isValue = !isValue) {
            if (!(isValue ? FillScalar() : FillShortString())) return;
        }
    }

  private:
    /// The bytes required at the start of a value: enough for every head and every short string.
    static constexpr std::size_t kReadAhead = 1 + PackedBytes::kLongestShortString;
    static_assert(kReadAhead > RawValues::kBlock && kReadAhead > PackedBytes::kLongestHead);

    bool HasNext() const { return slot_ != end_ && bytes_.Remaining() >= kReadAhead; }
    bool NextIs(PackedKind kind) const { return HasNext() && bytes_.PeekHead().kind == kind; }

    bool FillScalar() {
        switch (bytes_.PeekHead().kind) {
            case PackedKind::kInteger:
                return FillInteger();
            case PackedKind::kFloat64:
                return FillFloat();
            case PackedKind::kStr:
                return FillShortString();
            default:
                return FillConstant();
        }
    }

    bool FillConstant() {
        const PackedKind kind = bytes_.PeekHead().kind;
        if (kind == PackedKind::kNil) {
            bytes_.TakeNil();
            new (slot_++) rapidjson::Value();
            return true;
        }
        if (kind != PackedKind::kBoolean) return false;
        new (slot_++) rapidjson::Value(bytes_.TakeBoolean());
        return true;
    }

    bool FillInteger() {
        const PackedInteger integer = bytes_.TakeInteger(bytes_.PeekHead());
        RawValues::MakeInteger(*slot_++, integer.bits, integer.isNegative);
        return true;
    }

    bool FillFloat() {
        double rounded;
        if (!RoundToTwoDecimals(bytes_.PeekFloat64(), rounded)) return false;
        bytes_.TakeFloat64();
        new (slot_++) rapidjson::Value(rounded);
        return true;
    }

    bool FillShortString() {
        if (!bytes_.NextIsShortString()) return false;
        const unsigned size = bytes_.TakeShortLength();
        RawValues::MakeShortString(*slot_++, bytes_.TakeBytes(size), size, pool_);
        return true;
    }

    PackedBytes bytes_;
    rapidjson::Value* slot_;
    rapidjson::Value* const end_;
    JsonPool& pool_;
};

}  // namespace dataengine::detail
