#pragma once

#include <vector>

#include "structure/detail/PackedBytes.h"

namespace dataengine {

/// Reads one packed value in one pass and reports its parts to `handler` in the order of the bytes.
/// The handler is a class with these members; those that return bool end the walk with false:
///
///   bool Element()             an element of an array follows, or the root
///   bool Key(PackedKind)       a key of that kind follows
///   bool Value()               the value of a key follows
///
///   bool Nil(), Boolean(bool), Float(double), Ext()
///   bool Integer(std::uint64_t number, bool isNegative)     a negative number in two's complement
///   bool Str(const char* bytes, std::size_t size, std::size_t readable)
///   bool Bin(const char* bytes, std::size_t size, std::size_t readable)
///                              `readable` bytes, `size` or more, can be read from `bytes`
///
///   using Place                what the handler needs to go on after a container
///   Place BeginArray(std::uint32_t count), BeginMap(std::uint32_t count)
///   void EndArray(Place), EndMap(Place)
///
/// Throws what PackedBytes throws. Declared counts are checked against the remaining bytes before
/// the handler sees them: over the whole walk, it sees at most as many elements, keys and values
/// announced as there are bytes. There is no recursion; depth is bounded by memory only.
template <typename Handler>
class PackedWalk {
  public:
    PackedWalk(PackedBytes& bytes, Handler& handler) : bytes_(bytes), handler_(handler) {}

    /// Returns whether the walk came to the end of the value. `bytes` then begins after it.
    bool Run() {
        for (;;) {
            while (left_ == 0) {
                if (around_.empty()) return true;
                Leave();
            }
            const PackedHead& head = bytes_.Head();
            if (!Announce(head.kind)) return false;
            --left_;
            if (head.kind == PackedKind::kArray) {
                Enter(bytes_.TakeLength(head), false);
            } else if (head.kind == PackedKind::kMap) {
                Enter(bytes_.TakeLength(head), true);
            } else if (!Scalars(head)) {
                return false;
            }
        }
    }

  private:
    using Place = typename Handler::Place;

    /// A container around the current one.
    struct Level {
        std::uint64_t left;
        Place place;
        bool isMap;
    };

    bool Announce(PackedKind kind) {
        if (!isMap_) return handler_.Element();
        return left_ % 2 == 0 ? handler_.Key(kind) : handler_.Value();
    }

    /// Reports the scalar at `head`, and those of its kind that follow it in an array.
    bool Scalars(const PackedHead& head) {
        switch (head.kind) {
            case PackedKind::kInteger:
                return Repeat(head, [this](const PackedHead& each) {
                    bool isNegative;
                    const std::uint64_t number = bytes_.TakeInteger(each, isNegative);
                    return handler_.Integer(number, isNegative);
                });
            case PackedKind::kFloat32:
            case PackedKind::kFloat64:
                return Repeat(head, [this](const PackedHead& each) {
                    return handler_.Float(bytes_.TakeFloat(each));
                });
            case PackedKind::kStr:
                return Repeat(head, [this](const PackedHead& each) {
                    return String(each, [this](auto... text) { return handler_.Str(text...); });
                });
            case PackedKind::kBin:
                return String(head, [this](auto... text) { return handler_.Bin(text...); });
            case PackedKind::kBoolean:
                return handler_.Boolean(bytes_.TakeBoolean());
            case PackedKind::kExt:
                bytes_.TakeBytes(bytes_.TakeLength(head));
                return handler_.Ext();
            default:
                bytes_.TakeLength(head);
                return handler_.Nil();
        }
    }

    template <typename Report>
    bool Repeat(const PackedHead& head, const Report& report) {
        if (!report(head)) return false;
        if (isMap_) return true;
        while (left_ != 0 && bytes_.NextIs(head.kind)) {
            --left_;
            if (!handler_.Element() || !report(bytes_.Head())) return false;
        }
        return true;
    }

    template <typename Report>
    bool String(const PackedHead& head, const Report& report) {
        const std::uint64_t size = bytes_.TakeLength(head);
        const char* const text = bytes_.TakeBytes(size);
        return report(text, static_cast<std::size_t>(size), bytes_.Left() + size);
    }

    void Enter(std::uint64_t count, bool isMap) {
        const std::uint64_t children = isMap ? 2 * count : count;
        // Each of them takes a byte at least. If there are fewer, the value is cut or broken.
        const std::uint64_t claimed = children + left_ + leftAround_;
        if (claimed > bytes_.Left()) bytes_.Skip(claimed);
        const auto size = static_cast<std::uint32_t>(count);
        around_.push_back(
            {left_, isMap ? handler_.BeginMap(size) : handler_.BeginArray(size), isMap_});
        leftAround_ += left_;
        left_ = children;
        isMap_ = isMap;
    }

    void Leave() {
        const Level& level = around_.back();
        isMap_ ? handler_.EndMap(level.place) : handler_.EndArray(level.place);
        left_ = level.left;
        isMap_ = level.isMap;
        leftAround_ -= left_;
        around_.pop_back();
    }

    PackedBytes& bytes_;
    Handler& handler_;
    std::uint64_t left_ = 1;        // elements of the current container; keys and values of a map
    std::uint64_t leftAround_ = 0;  // the same of the containers around it
    bool isMap_ = false;
    std::vector<Level> around_;
};

}  // namespace dataengine
