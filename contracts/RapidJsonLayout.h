#pragma once

#include <rapidjson/document.h>

#include <type_traits>

// Documents cross the boundary of libdataengine.so and are worked on by inlined code of rapidjson
// on both sides, so both must see one layout. What decides it is settled here, as the library is
// built: rapidjson 1.1 with its own defaults for the platform. A program that sees anything else
// fails to compile, where it would otherwise corrupt its memory.
//
// RAPIDJSON_HAS_STDSTRING, RAPIDJSON_ASSERT, RAPIDJSON_NOEXCEPT and the vector instruction macros
// are free: they add or change operations, but no layout. RAPIDJSON_NAMESPACE is not: the documents
// are those of the namespace ::rapidjson.

static_assert(RAPIDJSON_MAJOR_VERSION == 1 && RAPIDJSON_MINOR_VERSION == 1,
              "libdataengine exchanges documents of rapidjson 1.1");

#if defined(__x86_64__)
static_assert(RAPIDJSON_48BITPOINTER_OPTIMIZATION == 1,
              "libdataengine is built with RAPIDJSON_48BITPOINTER_OPTIMIZATION on");
#else
static_assert(RAPIDJSON_48BITPOINTER_OPTIMIZATION == 0,
              "libdataengine is built with RAPIDJSON_48BITPOINTER_OPTIMIZATION off");
#endif

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

// Snapshots of rapidjson that still call themselves 1.1.0 have other pools and documents.
#if RAPIDJSON_64BIT
static_assert(sizeof(::rapidjson::Value) == (RAPIDJSON_48BITPOINTER_OPTIMIZATION ? 16 : 24) &&
                  sizeof(::rapidjson::Document::AllocatorType) == 40 &&
                  sizeof(::rapidjson::Document) == sizeof(::rapidjson::Value) + 80,
              "libdataengine is built with the classes of rapidjson 1.1.0 as it was released");
#endif
