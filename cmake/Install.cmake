# The files that `cmake --install` copies, by component: the libraries (runtime, and bson for the
# optional one), the headers, static libraries, CMake packages and pkg-config files (development)
# and the command-line tool (tools). find_package(DataEngine) finds everything a program needs;
# COMPONENTS adds the optional libraries. debian/ makes packages of them.
include(CMakePackageConfigHelpers)

set(packages ${CMAKE_INSTALL_LIBDIR}/cmake)

# dataengine_install_library(target component package export includes): installs a library into
# `component`, and into development what is needed to build against it. Its targets file,
# EXPORTTargets.cmake, belongs to the CMake package `package`.
function(dataengine_install_library target component package export includes)
    set(headers)
    get_target_property(sets ${target} INTERFACE_HEADER_SETS)
    foreach(set IN LISTS sets)
        list(APPEND headers FILE_SET ${set}
             DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${includes} COMPONENT development)
    endforeach()
    install(TARGETS ${target} EXPORT ${export}
        LIBRARY COMPONENT ${component} NAMELINK_COMPONENT development
        ARCHIVE COMPONENT development
        ${headers})
    install(EXPORT ${export} NAMESPACE ${package}:: FILE ${export}Targets.cmake
        DESTINATION ${packages}/${package} COMPONENT development)

    configure_file(cmake/${target}.pc.in ${target}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${target}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endfunction()

# dataengine_install_package(package files...): the files by which find_package finds `package`.
function(dataengine_install_package package)
    configure_package_config_file(cmake/${package}Config.cmake.in ${package}Config.cmake
        INSTALL_DESTINATION ${packages}/${package} NO_SET_AND_CHECK_MACRO)
    write_basic_package_version_file(${package}ConfigVersion.cmake COMPATIBILITY SameMajorVersion)
    install(FILES ${PROJECT_BINARY_DIR}/${package}Config.cmake
                  ${PROJECT_BINARY_DIR}/${package}ConfigVersion.cmake ${ARGN}
        DESTINATION ${packages}/${package} COMPONENT development)
endfunction()

# The folder that holds lib/, as the pkg-config files see it from their own.
file(RELATIVE_PATH pkgconfig_prefix
     ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" pkgconfig_prefix ${pkgconfig_prefix})

# Whether pkg-config finds an external VxUtil is left to the platform.
set(dataengine_requires RapidJSON)
if(NOT BUILD_SHARED_LIBS)
    set(dataengine_cflags -DDATAENGINE_STATIC)
    set(vxutil_cflags -DVXUTIL_STATIC)
    set(vxutil_requires libxxhash)
    set(dataengine_bson_cflags -DDATAENGINE_BSON_STATIC)
    set(dataengine_bson_requires libbson-1.0)
endif()
if(DATAENGINE_VXUTIL STREQUAL "bundled")
    string(APPEND dataengine_requires " VxUtil")
    dataengine_install_library(VxUtil runtime VxUtil VxUtil "")
    dataengine_install_package(VxUtil cmake/FindXxhash.cmake)
endif()
dataengine_install_library(dataengine runtime DataEngine DataEngine dataengine)
if(TARGET dataengine_bson)
    dataengine_install_library(dataengine_bson bson DataEngine DataEngineBson dataengine)
    dataengine_install_package(DataEngine cmake/FindLibbson.cmake)
else()
    dataengine_install_package(DataEngine)
endif()

# GDB loads the pretty-printers together with the library from this path, in the prefix /usr.
if(BUILD_SHARED_LIBS AND DATAENGINE_VXUTIL STREQUAL "bundled")
    install(FILES tools/gdb/dataengine.py COMPONENT runtime
        DESTINATION ${CMAKE_INSTALL_DATADIR}/gdb/auto-load${CMAKE_INSTALL_FULL_LIBDIR}
        RENAME libVxUtil.so.${PROJECT_VERSION}-gdb.py)
endif()

if(PROJECT_IS_TOP_LEVEL)
    add_custom_target(uninstall
        COMMAND ${CMAKE_COMMAND} -DBUILD=${PROJECT_BINARY_DIR} -P ${PROJECT_SOURCE_DIR}/cmake/Uninstall.cmake)
endif()
