#pragma once

#include <rapidjson/fwd.h>

#include <type_traits>

// Documents cross the boundary of libdataengine.so, and inlined code of rapidjson works on them on
// both sides, so both sides must see the same layout. The assertions below fix the layout that the
// library is built with: rapidjson 1.1 with its defaults for the platform. A program with any other
// layout fails to compile instead of corrupting its memory.
//
// RAPIDJSON_HAS_STDSTRING, RAPIDJSON_ASSERT, RAPIDJSON_NOEXCEPT and the vector instruction macros
// may be set freely: they affect operations, not the layout. RAPIDJSON_NAMESPACE may not: the
// documents are those of the namespace ::rapidjson.

static_assert(RAPIDJSON_MAJOR_VERSION == 1 && RAPIDJSON_MINOR_VERSION == 1,
              "libdataengine exchanges documents of rapidjson 1.1");

#if defined(__x86_64__)
static_assert(RAPIDJSON_48BITPOINTER_OPTIMIZATION == 1,
              "libdataengine is built with RAPIDJSON_48BITPOINTER_OPTIMIZATION on");
#else
static_assert(RAPIDJSON_48BITPOINTER_OPTIMIZATION == 0,
              "libdataengine is built with RAPIDJSON_48BITPOINTER_OPTIMIZATION off");
#endif

static_assert(RAPIDJSON_ENDIAN == (__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
                                       ? RAPIDJSON_LITTLEENDIAN
                                       : RAPIDJSON_BIGENDIAN),
              "libdataengine is built with the RAPIDJSON_ENDIAN of the machine");

static_assert(std::is_same_v<::rapidjson::SizeType, unsigned>,
              "libdataengine is built without RAPIDJSON_NO_SIZETYPEDEFINE");

static_assert(RAPIDJSON_ALIGN(1) == sizeof(void*),
              "libdataengine is built with the default RAPIDJSON_ALIGN");

static_assert(
    std::is_same_v<
        ::rapidjson::Document,
        ::rapidjson::GenericDocument<::rapidjson::UTF8<char>,
                                     ::rapidjson::MemoryPoolAllocator<::rapidjson::CrtAllocator>,
                                     ::rapidjson::CrtAllocator>>,
    "libdataengine exchanges documents over rapidjson's default allocators");
