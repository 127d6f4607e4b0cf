#pragma once

// The exceptions of msgpack alone: <msgpack.hpp> takes the compiler twice as long.
#include <msgpack/object_fwd.hpp>
#include <msgpack/unpack_decl.hpp>
#include <msgpack/unpack_exception.hpp>
