# bench_catalogue: measures the cost of the catalogue when a library is loaded and when its header is
# compiled.
add_library(catalogue_with MODULE ${PROJECT_SOURCE_DIR}/schema/detail/Names.cpp)
target_include_directories(catalogue_with PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR}/include)

file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/catalogue_without.cpp "")
add_library(catalogue_without MODULE ${CMAKE_CURRENT_BINARY_DIR}/catalogue_without.cpp)

add_executable(catalogue_load catalogue_load.cpp)
target_link_libraries(catalogue_load PRIVATE ${CMAKE_DL_LIBS})
dataengine_build_flags(catalogue_load)

add_custom_target(bench_catalogue
    COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/catalogue_cost $<TARGET_FILE:catalogue_load>
            $<TARGET_FILE:catalogue_with> $<TARGET_FILE:catalogue_without> ${CMAKE_CXX_COMPILER}
            ${PROJECT_BINARY_DIR}/include
    DEPENDS catalogue_load catalogue_with catalogue_without
    USES_TERMINAL VERBATIM)
