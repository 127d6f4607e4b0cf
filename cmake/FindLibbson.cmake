# Finds libbson as DataEngine::libbson, for the build and for programs that link a static library.
find_path(LIBBSON_INCLUDE_DIR bson/bson.h PATH_SUFFIXES libbson-1.0)
find_library(LIBBSON_LIBRARY bson-1.0)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Libbson REQUIRED_VARS LIBBSON_LIBRARY LIBBSON_INCLUDE_DIR
    REASON_FAILURE_MESSAGE "Install libbson-dev, or set both variables.")

if(Libbson_FOUND AND NOT TARGET DataEngine::libbson)
    add_library(DataEngine::libbson UNKNOWN IMPORTED)
    set_target_properties(DataEngine::libbson PROPERTIES
        IMPORTED_LOCATION ${LIBBSON_LIBRARY} INTERFACE_INCLUDE_DIRECTORIES ${LIBBSON_INCLUDE_DIR})
endif()
