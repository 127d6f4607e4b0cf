# dataengine_build_flags(target): what our own code is compiled with. Warnings are errors here and
# nowhere else: nothing of this reaches those who link the libraries.
function(dataengine_build_flags target)
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
            # In instrumented code g++ loses track of which member of a union lives.
            target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized)
        endif()
    endif()
endfunction()

# dataengine_library(target static_macro): a library that is installed. A shared library carries
# the major version in its SONAME and finds its neighbours in its own folder; the run path is the
# same in the build tree, whose location leaves no trace in the file. In a static library, and in
# programs that link it, static_macro turns the exports off.
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
