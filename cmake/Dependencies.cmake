# Each dependency is a target of this build, so that its headers are treated as system headers.
find_path(RAPIDJSON_INCLUDE_DIR rapidjson/document.h REQUIRED)
add_library(dataengine_rapidjson INTERFACE)
target_include_directories(dataengine_rapidjson SYSTEM INTERFACE ${RAPIDJSON_INCLUDE_DIR})

find_path(MSGPACK_INCLUDE_DIR msgpack.hpp REQUIRED)
add_library(dataengine_msgpack INTERFACE)
target_include_directories(dataengine_msgpack SYSTEM INTERFACE ${MSGPACK_INCLUDE_DIR})
target_compile_definitions(dataengine_msgpack INTERFACE MSGPACK_NO_BOOST)

if(DATAENGINE_VXUTIL STREQUAL "bundled")
    list(APPEND CMAKE_MODULE_PATH ${PROJECT_SOURCE_DIR}/cmake)
    find_package(Xxhash REQUIRED)
    find_package(Libbson QUIET)
endif()

option(DATAENGINE_BSON "The BSON library (needs libbson and the bundled VxUtil)" ${Libbson_FOUND})
if(DATAENGINE_BSON)
    if(NOT DATAENGINE_VXUTIL STREQUAL "bundled")
        message(FATAL_ERROR "DATAENGINE_BSON needs the bundled VxUtil: set one of DATAENGINE_BSON=OFF and DATAENGINE_VXUTIL=bundled.")
    endif()
    find_package(Libbson REQUIRED)
endif()
