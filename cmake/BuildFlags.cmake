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

# dataengine_shared_library(target): a library that others link. The name of its file changes with
# the major version, and it finds its neighbours in its own folder, wherever that is.
function(dataengine_shared_library target)
    dataengine_build_flags(${target})
    target_compile_features(${target} PUBLIC cxx_std_17)
    set(exports ${PROJECT_SOURCE_DIR}/cmake/exports.map)
    target_link_options(${target} PRIVATE LINKER:--version-script=${exports})
    set_target_properties(${target} PROPERTIES
        VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
        INSTALL_RPATH $ORIGIN
        LINK_DEPENDS ${exports})
endfunction()
