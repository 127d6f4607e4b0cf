# Counts the names that a library exports: cmake -DNM=... -DLIBRARY=... -P ExportedNames.cmake
# Each must be initialised data (D): a name that is bound by code while loading would be of type B.
execute_process(COMMAND ${NM} --dynamic --defined-only ${LIBRARY}
                OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
foreach(group "VariableMappingNames=26" "DataEngineNames=53" "StoreNames=1708")
    string(REGEX MATCH "^(.*)=(.*)$" group ${group})
    set(namespace ${CMAKE_MATCH_1})
    set(expected ${CMAKE_MATCH_2})
    string(LENGTH ${namespace} length)
    string(REGEX MATCHALL " D _ZN${length}${namespace}[0-9]" names "${symbols}")
    list(LENGTH names count)
    message(STATUS "${namespace}: ${count} of ${expected} names exported")
    if(NOT count EQUAL expected)
        message(SEND_ERROR "${LIBRARY} exports ${count} names of ${namespace}, not ${expected}")
    endif()
endforeach()
