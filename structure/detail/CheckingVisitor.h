#pragma once

#include <msgpack.hpp>

namespace dataengine {

/// A visitor of packed bytes that keeps nothing and raises what msgpack's own unpacking raises.
struct CheckingVisitor : msgpack::null_visitor {
    void insufficient_bytes(std::size_t, std::size_t) {
        throw msgpack::insufficient_bytes("insufficient bytes");
    }
    void parse_error(std::size_t, std::size_t) { throw msgpack::parse_error("parse error"); }
};

}  // namespace dataengine
