#pragma once

#include <VxUtil/vxJson.h>
#include <rapidjson/document.h>

#include <cstddef>
#include <cstdint>
#include <msgpack.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace dataengine {

/// What bad input to a writer throws. Only the bundled VxUtil is known to have vxJson::Error.
#ifdef DATAENGINE_EXTERNAL_VXUTIL
using WriterError = std::runtime_error;
#else
using WriterError = vxJson::Error;
#endif

/// Appends packed values to a string:
///
///   null, boolean   nil, true, false
///   integer         the narrowest form
///   double          float64, also if whole; NaN and the infinities as nil
///   string          str
///   binary          bin
///   array, object   array, map with str keys
///
/// Depth is bounded by memory only. After an exception the string ends in part of a value.
class ValuePacker {
  public:
    explicit ValuePacker(std::string& bytes) : output_{bytes}, packer_(output_) {}

    void Integer(std::int64_t number) { packer_.pack_int64(number); }
    void Bool(bool value) { value ? packer_.pack_true() : packer_.pack_false(); }
    void Array(std::size_t count) { packer_.pack_array(static_cast<std::uint32_t>(count)); }
    void Map(std::size_t count) { packer_.pack_map(static_cast<std::uint32_t>(count)); }
    void Str(std::string_view bytes);
    void Packed(const std::string& bytes) { output_.bytes += bytes; }

    /// Packs a value of a document. A double is packed so that it decodes to itself, if any float
    /// decodes to it.
    void Value(const rapidjson::Value& value);

    /// Throws WriterError if `value` is a time or contains one.
    void Value(const vxJson::Value& value);

    /// Packs the value of a JSON text. Returns false if `text` is not JSON.
    bool JsonText(const char* text);

  private:
    /// Adapts a string to what msgpack::packer writes to.
    struct Output {
        std::string& bytes;
        void write(const char* data, std::size_t size) { bytes.append(data, size); }
    };

    /// An array or object that is being packed, and the same value as it prints.
    struct PrintedContainer {
        const vxJson::Value& value;
        const rapidjson::Value& printed;
        rapidjson::SizeType count;
        rapidjson::SizeType position = 0;  // of the next element or member
    };

    void Node(const vxJson::Value& value, const rapidjson::Value& printed,
              std::vector<PrintedContainer>& open);
    void Scalar(const rapidjson::Value& value);
    void Double(double value);
    void Bin(std::string_view bytes);

    Output output_;
    msgpack::packer<Output> packer_;
};

}  // namespace dataengine
