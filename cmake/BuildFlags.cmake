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
