# dataengine_build_flags(target): sets the warnings and sanitizers of this project's own code. All are
# private: programs that link the libraries do not inherit them.
#
# Stored bytes and decoded documents must not depend on the machine, so floating-point expressions
# are computed as written: no fused multiply-add, no reordering. These flags of the targets come
# after those of the build, and undo -ffast-math there.
function(dataengine_build_flags target)
    set(exact -fno-fast-math -fno-unsafe-math-optimizations)
    target_compile_options(${target} PRIVATE ${exact} -ffp-contract=off)
    target_link_options(${target} PRIVATE ${exact})  # else the linker adds code that drops denormals
    if(DATAENGINE_DEVELOPER)
        target_compile_options(${target} PRIVATE
            -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast
            -Woverloaded-virtual -Wnon-virtual-dtor -Wcast-qual -Wcast-align -Wformat=2
            -Wimplicit-fallthrough -Wundef -Wdouble-promotion -Werror)
    endif()
    if(DATAENGINE_SANITIZE)
        target_compile_options(${target} PRIVATE
            -fsanitize=${DATAENGINE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=${DATAENGINE_SANITIZE})
        if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
            # In instrumented code g++ cannot tell which union member is active.
            target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized)
        endif()
    endif()
endfunction()

# dataengine_library(target static_macro): a library that is installed. A shared library carries
# the major version in its SONAME and finds the other libraries in its own folder. The run path is
# the same in the build tree, so that the file does not depend on the location of the build. In a
# static library, and in programs that link it, static_macro turns the exports off.
function(dataengine_library target static_macro)
    dataengine_build_flags(${target})
    target_compile_features(${target} PUBLIC cxx_std_17)
    if(NOT BUILD_SHARED_LIBS)
        target_compile_definitions(${target} PUBLIC ${static_macro})
        return()
    endif()
    set(exports ${PROJECT_SOURCE_DIR}/cmake/exports.map)
    target_link_options(${target} PRIVATE LINKER:--version-script=${exports})
    set_target_properties(${target} PROPERTIES
        VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
        INSTALL_RPATH $ORIGIN BUILD_WITH_INSTALL_RPATH ON
        LINK_DEPENDS ${exports})
endfunction()
