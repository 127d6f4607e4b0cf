#pragma once

#include <msgpack.hpp>

#include <cstdint>
#include <string>
#include <vector>

#include "documents/RawValues.h"
#include "structure/detail/CheckingVisitor.h"
#include "structure/detail/TwoDecimals.h"

namespace dataengine {

/// Turns packed values into rapidjson values in the pool of a document, one after the other.
///
///   bytes -- msgpack::parse --> visitor --> value in the pool
///
/// What comes out is what printing the object with two decimals and parsing that text gives:
/// integers whole, floats with two decimals, a str byte for byte, a bin where its bytes between
/// quotation marks are one whole JSON string. A value that text could not carry is null as a whole:
/// one that holds an ext, a NaN or an infinity, a map key that is no string, or another bin.
///
/// A declared size is never believed before the bytes can be there: what is taken from the pool is
/// bounded by the bytes at hand. Depth is bounded by memory alone.
class ValueDecoder : public CheckingVisitor {
  public:
    explicit ValueDecoder(JsonPool& pool) : pool_(pool) {}

    /// Decodes the value at the start of `size` bytes. Throws msgpack::insufficient_bytes where
    /// they end before the value does and msgpack::parse_error at a byte that starts no value.
    rapidjson::Value Decode(const char* bytes, std::size_t size);

    // What msgpack::parse calls. False ends the visit: the value can't be had.
    bool visit_nil() {
        new (slot_++) rapidjson::Value();
        return true;
    }
    bool visit_boolean(bool value) {
        new (slot_++) rapidjson::Value(value);
        return true;
    }
    bool visit_positive_integer(std::uint64_t value) {
        RawValues::MakeInteger(*slot_++, value);
        return true;
    }
    bool visit_negative_integer(std::int64_t value) {
        if (value >= 0) return visit_positive_integer(static_cast<std::uint64_t>(value));
        RawValues::MakeNegativeInteger(*slot_++, value);
        return true;
    }
    bool visit_float32(float value) { return PutFloat(static_cast<double>(value), sizeof value); }
    bool visit_float64(double value) { return PutFloat(value, sizeof value); }
    bool visit_str(const char* bytes, std::uint32_t size) {
        left_ -= size;
        if (size == 0) return PutEmptyString();
        const auto spare = static_cast<std::size_t>(end_ - bytes) - size;
        RawValues::MakeString(*slot_++, bytes, size, spare, pool_);
        return true;
    }
    bool visit_bin(const char* bytes, std::uint32_t size);
    bool visit_ext(const char*, std::uint32_t) { return false; }

    bool start_array(std::uint32_t count) {
        if (!Owe(count)) return false;
        open_.push_back(slot_);
        slot_ = RawValues::MakeArray(*slot_, count, pool_);
        return true;
    }
    bool end_array() {
        Close();
        return true;
    }
    bool start_map(std::uint32_t count) {
        if (!Owe(2 * std::int64_t{count})) return false;
        open_.push_back(slot_);
        slot_ = RawValues::MakeObject(*slot_, count, pool_);
        return true;
    }
    bool end_map_key() { return slot_[-1].IsString(); }
    bool end_map() {
        Close();
        return true;
    }

  private:
    /// Takes `count` elements on, each at least a byte long. False if the bytes can't hold them.
    bool Owe(std::int64_t count) {
        left_ -= count;
        return left_ >= 0;
    }
    void Close() {
        slot_ = open_.back() + 1;
        open_.pop_back();
    }
    /// msgpack may announce an empty string by a null pointer.
    bool PutEmptyString() {
        RawValues::MakeString(*slot_++, "", 0, pool_);
        return true;
    }
    bool PutFloat(double value, std::size_t size) {
        left_ -= static_cast<std::int64_t>(size);
        const std::optional<double> rounded = TwoDecimals(value);
        if (!rounded) return PutFloatByText(value);
        new (slot_++) rapidjson::Value(*rounded);
        return true;
    }
    bool PutFloatByText(double value);
    bool PutBinByText(const char* bytes, std::uint32_t size);

    JsonPool& pool_;
    const char* end_ = nullptr;  // of the bytes at hand
    std::int64_t left_ = 0;      // bytes that no element met or announced so far lays claim to
    rapidjson::Value* slot_ = nullptr;     // where the next value goes
    std::vector<rapidjson::Value*> open_;  // the containers around it
    std::string text_;                     // scratch for a token that goes through text
};

}  // namespace dataengine
