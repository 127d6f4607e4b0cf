# Generates headers that check that a library and its callers use the same standard library settings.
include(CheckCXXSourceCompiles)

# dataengine_check_setting(variable condition): sets variable to 1 if the condition holds with the
# flags of this build, else to 0.
function(dataengine_check_setting variable condition)
    string(TOUPPER "${CMAKE_BUILD_TYPE}" build_type)
    set(CMAKE_REQUIRED_FLAGS "${CMAKE_CXX_FLAGS_${build_type}}")
    set(CMAKE_REQUIRED_QUIET ON)
    unset(dataengine_setting CACHE)  # The flags may have changed since.
    check_cxx_source_compiles("#include <cstddef>\n#if !(${condition})\n#error\n#endif\nint main() {}"
                              dataengine_setting)
    if(dataengine_setting)
        set(${variable} 1 PARENT_SCOPE)
    else()
        set(${variable} 0 PARENT_SCOPE)
    endif()
    unset(dataengine_setting CACHE)
endfunction()

# dataengine_standard_library_header(target header): adds the public header to the target.
function(dataengine_standard_library_header target header)
    set(library ${target})
    dataengine_check_setting(debug "defined(_GLIBCXX_DEBUG)")
    dataengine_check_setting(cxx11_abi "_GLIBCXX_USE_CXX11_ABI")
    set(folder ${PROJECT_BINARY_DIR}/include)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/StandardLibrary.h.in ${folder}/${header} @ONLY)
    target_sources(${target} PUBLIC FILE_SET generated TYPE HEADERS BASE_DIRS ${folder}
                   FILES ${folder}/${header})
endfunction()
