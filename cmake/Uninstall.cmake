# Removes the files that the last `cmake --install` of a build folder installed, of all components:
# cmake -DBUILD=folder -P Uninstall.cmake. Honours DESTDIR as the installation does.
file(GLOB manifests ${BUILD}/install_manifest*.txt)
if(NOT manifests)
    message(FATAL_ERROR "Nothing was installed from ${BUILD}.")
endif()
foreach(manifest IN LISTS manifests)
    file(STRINGS ${manifest} files)
    foreach(file IN LISTS files)
        message(STATUS "Removing $ENV{DESTDIR}${file}")
        file(REMOVE "$ENV{DESTDIR}${file}")
    endforeach()
    file(REMOVE ${manifest})
endforeach()
