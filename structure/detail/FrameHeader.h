#pragma once

#include <VxUtil/vxJson.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "structure/detail/MsgpackErrors.h"

namespace dataengine::detail {

/// Reads the header of a frame: the version, the name and the schema, one packed object after the
/// other. `length` receives the number of bytes that they take. `frame` may be a part of `schema`,
/// which is replaced last, but not of `name`.
///
/// Returns false, with the outputs unchanged, if the version is an integer other than 1. A schema
/// whose text is not JSON becomes null.
///
/// Throws msgpack::insufficient_bytes, msgpack::parse_error, or msgpack::type_error if the version
/// is not a 32-bit integer or the name is neither `str` nor `bin`. The outputs are then unchanged,
/// except that an error in the schema leaves `name` replaced.
bool ReadHeader(std::string_view frame, std::string& name, vxJson::Value& schema,
                std::size_t& length);

/// Thrown if the version or the name is of another kind.
class BadCast : public msgpack::type_error {
  public:
    /// `description` names the object, its byte in the frame and what is wrong with it.
    explicit BadCast(std::string description) : description_(std::move(description)) {}

    const char* what() const noexcept override { return "bad cast"; }
    const std::string& Description() const { return description_; }

  private:
    std::string description_;
};

}  // namespace dataengine::detail
