# Finds libxxhash as VxUtil::xxhash, for the build and for programs that link a static VxUtil.
find_path(XXHASH_INCLUDE_DIR xxhash.h)
find_library(XXHASH_LIBRARY xxhash)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Xxhash REQUIRED_VARS XXHASH_LIBRARY XXHASH_INCLUDE_DIR
    REASON_FAILURE_MESSAGE "Install libxxhash-dev, or set both variables.")

if(Xxhash_FOUND AND NOT TARGET VxUtil::xxhash)
    add_library(VxUtil::xxhash UNKNOWN IMPORTED)
    set_target_properties(VxUtil::xxhash PROPERTIES
        IMPORTED_LOCATION ${XXHASH_LIBRARY} INTERFACE_INCLUDE_DIRECTORIES ${XXHASH_INCLUDE_DIR})
endif()
