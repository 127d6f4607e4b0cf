#pragma once

#include <vector>

#include "structure/detail/PackedBytes.h"

namespace dataengine::detail {

/// Takes a scalar with this head and reports it to a handler of PackedWalk. Returns what the
/// handler returns.
template <typename Handler>
bool TakeScalar(PackedBytes& bytes, const PackedHead& head, Handler& handler) {
    switch (head.kind) {
        case PackedKind::kInteger:
            return handler.Integer(bytes.TakeInteger(head));
        case PackedKind::kFloat32:
        case PackedKind::kFloat64:
            return handler.Float(bytes.TakeFloat(head));
        case PackedKind::kStr:
        case PackedKind::kBin: {
            const auto size = static_cast<std::size_t>(bytes.TakeLength(head));
            const char* const text = bytes.TakeBytes(size);
            return head.kind == PackedKind::kStr ? handler.Str(text, size)
                                                 : handler.Bin(text, size);
        }
        case PackedKind::kBoolean:
            return handler.Boolean(bytes.TakeBoolean());
        case PackedKind::kExt:
            bytes.TakeBytes(bytes.TakeLength(head));
            return handler.Ext();
        default:
            bytes.TakeNil();
            return handler.Nil();
    }
}

/// Reads one packed value in one pass and reports its parts to a handler in the order of the bytes.
/// The handler is a class with these members:
///
///   std::uint64_t TakeScalars(PackedBytes& bytes, std::uint64_t remaining, bool isMap)
///                              `remaining` elements of an array follow, or keys and values of a
///                              map; a handler may read some itself and returns their number
///   bool Element()             an element of an array follows, or the value as a whole
///   bool Key(PackedKind)       a key of this kind follows
///   bool Value()               the value of a key follows
///   bool Nil(), Boolean(bool), Integer(PackedInteger), Float(double), Ext()
///   bool Str(const char* bytes, std::size_t size), Bin(const char* bytes, std::size_t size)
///   Context BeginArray(std::uint32_t count), BeginMap(std::uint32_t count)
///   void EndArray(Context), EndMap(Context)
///   using Context                state of the handler that it gets back when the container ends
///
/// The walk ends when one of them returns false. Declared counts are checked against the remaining
/// bytes before they are reported: the elements, keys and values reported as declared never
/// outnumber the bytes. The walk does not recurse; depth is bounded by memory only.
template <typename Handler>
class PackedWalk {
  public:
    PackedWalk(PackedBytes& bytes, Handler& handler) : bytes_(bytes), handler_(handler) {}

    /// Returns whether the walk reached the end of the value; the bytes then begin after it. Throws
    /// as PackedBytes does.
    bool Run() {
        for (;;) {
            while (remaining_ == 0) {
                if (around_.empty()) return true;
                Leave();
            }
            remaining_ -= handler_.TakeScalars(bytes_, remaining_, isMap_);
            if (remaining_ == 0) continue;
            const PackedHead& head = bytes_.Head();
            if (!Announce(head.kind)) return false;
            --remaining_;
            if (head.kind == PackedKind::kArray) {
                Enter(bytes_.TakeLength(head), false);
            } else if (head.kind == PackedKind::kMap) {
                Enter(bytes_.TakeLength(head), true);
            } else if (!TakeScalar(bytes_, head, handler_)) {
                return false;
            }
        }
    }

  private:
    using Context = typename Handler::Context;

    /// A container around the current one. Small, because a level of the input may be one byte.
    struct Level {
        std::uint64_t remaining;  // twice, plus one for a map
        Context context;
    };

    bool Announce(PackedKind kind) {
        if (!isMap_) return handler_.Element();
        return remaining_ % 2 == 0 ? handler_.Key(kind) : handler_.Value();
    }

    void Enter(std::uint64_t count, bool isMap) {
        const std::uint64_t children = isMap ? 2 * count : count;
        // Each takes at least one byte. If fewer bytes remain, skipping them throws the error.
        const std::uint64_t claimed = children + remaining_ + remainingAround_;
        if (claimed > bytes_.Remaining()) bytes_.Skip(claimed);
        const auto size = static_cast<std::uint32_t>(count);
        around_.push_back({2 * remaining_ + (isMap_ ? 1 : 0),
                           isMap ? handler_.BeginMap(size) : handler_.BeginArray(size)});
        remainingAround_ += remaining_;
        remaining_ = children;
        isMap_ = isMap;
    }

    void Leave() {
        const Level& level = around_.back();
        if (isMap_) {
            handler_.EndMap(level.context);
        } else {
            handler_.EndArray(level.context);
        }
        remaining_ = level.remaining / 2;
        isMap_ = level.remaining % 2 == 1;
        remainingAround_ -= remaining_;
        around_.pop_back();
    }

    PackedBytes& bytes_;
    Handler& handler_;
    std::uint64_t remaining_ = 1;  // elements of the current container; keys and values of a map
    std::uint64_t remainingAround_ = 0;  // the same of the containers around it
    bool isMap_ = false;
    std::vector<Level> around_;
};

}  // namespace dataengine::detail
