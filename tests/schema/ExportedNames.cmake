# Counts the names that a library exports: cmake -DNM=... -DLIBRARY=... -P ExportedNames.cmake
# Each must be initialised data (D): a name that is bound by code while loading would be of type B.
# Nothing else of the library may run at load: the strings are built with a priority, and the static
# objects of a program that contains the library are built before initializers without one.
execute_process(COMMAND ${NM} --dynamic --defined-only ${LIBRARY}
                OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
file(GLOB store ${CMAKE_CURRENT_LIST_DIR}/../../schema/names/*.def)
list(FILTER store EXCLUDE REGEX "/(VariableMapping|DataEngine)\\.def$")
foreach(group VariableMapping DataEngine Store)
    string(TOLOWER ${group} files)
    if(NOT group STREQUAL Store)
        set(${files} ${CMAKE_CURRENT_LIST_DIR}/../../schema/names/${group}.def)
    endif()
    set(expected 0)
    foreach(file IN LISTS ${files})
        file(STRINGS ${file} rows REGEX "^(NAME|TEXT|COPY)")
        string(REGEX MATCHALL "(NAME|TEXT|COPY)\\(" rows "${rows}")
        list(LENGTH rows count)
        math(EXPR expected "${expected} + ${count}")
    endforeach()
    string(LENGTH ${group}Names length)
    string(REGEX MATCHALL " D _ZN${length}${group}Names[0-9]" names "${symbols}")
    list(LENGTH names count)
    message(STATUS "${group}Names: ${count} of ${expected} names exported")
    if(NOT count EQUAL expected)
        message(SEND_ERROR "${LIBRARY} exports ${count} names of ${group}Names, not ${expected}")
    endif()
endforeach()

execute_process(COMMAND ${NM} ${LIBRARY} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "_GLOBAL__sub_I_[^\n]*" initializers "${symbols}")
list(REMOVE_ITEM initializers _GLOBAL__sub_I_Names.cpp)  # clang adds an empty one
if(initializers)
    message(SEND_ERROR "${LIBRARY} runs code at load: ${initializers}")
endif()
