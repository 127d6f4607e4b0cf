# What `cmake --install` lays down: the libraries (component runtime), and the headers, the CMake
# packages and the pkg-config files (component development). The packages find each other, so that
# find_package(DataEngine) is all that a program needs.
include(CMakePackageConfigHelpers)

# dataengine_install_package(package target includes): the files of one package.
function(dataengine_install_package package target includes)
    set(folder ${CMAKE_INSTALL_LIBDIR}/cmake/${package})
    set(headers)
    get_target_property(sets ${target} INTERFACE_HEADER_SETS)
    foreach(set IN LISTS sets)
        list(APPEND headers FILE_SET ${set}
             DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${includes} COMPONENT development)
    endforeach()
    install(TARGETS ${target} EXPORT ${package}
        LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
        ${headers})
    install(EXPORT ${package} NAMESPACE ${package}:: FILE ${package}Targets.cmake
        DESTINATION ${folder} COMPONENT development)

    configure_package_config_file(cmake/${package}Config.cmake.in ${package}Config.cmake
        INSTALL_DESTINATION ${folder} NO_SET_AND_CHECK_MACRO)
    write_basic_package_version_file(${package}ConfigVersion.cmake COMPATIBILITY SameMajorVersion)
    install(FILES ${PROJECT_BINARY_DIR}/${package}Config.cmake
                  ${PROJECT_BINARY_DIR}/${package}ConfigVersion.cmake
        DESTINATION ${folder} COMPONENT development)

    configure_file(cmake/${target}.pc.in ${target}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${target}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endfunction()

# The folder that holds lib/, as the pkg-config files see it from their own.
file(RELATIVE_PATH pkgconfig_prefix
     ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" pkgconfig_prefix ${pkgconfig_prefix})

# How pkg-config knows a platform's own utility library, if at all, is the platform's affair.
set(pkgconfig_requires RapidJSON)
if(DATAENGINE_VXUTIL STREQUAL "bundled")
    string(APPEND pkgconfig_requires " VxUtil")
    dataengine_install_package(VxUtil VxUtil "")
endif()
dataengine_install_package(DataEngine dataengine dataengine)

if(PROJECT_IS_TOP_LEVEL)
    include(cmake/Packages.cmake)
endif()
