# Installs the libraries with their public headers, the package AveldoranData for find_package, and files for pkg-config.
# Everything refers to its own place, so that an installed tree can be moved. Read after both libraries are complete, and
# before the programs, whose run path it sets.
# The components core, data, development and tools are the Debian packages (AveldoranPackages.cmake).

include(CMakePackageConfigHelpers)

set(aveldoran_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/AveldoranData)

# The Qt components in a property of a target, such as "Core;Xml".
function(aveldoran_qt_components target property result)
    get_target_property(libraries ${target} ${property})
    list(FILTER libraries INCLUDE REGEX "^Qt5::")
    list(TRANSFORM libraries REPLACE "^Qt5::" "")
    list(REMOVE_DUPLICATES libraries)
    set(${result} ${libraries} PARENT_SCOPE)
endfunction()

# --- libraries and headers ---

set_target_properties(aveldoran aveldorandata PROPERTIES INSTALL_RPATH "$ORIGIN")
install(TARGETS aveldoran
    EXPORT AveldoranDataTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT core NAMELINK_COMPONENT development)
install(TARGETS aveldorandata
    EXPORT AveldoranDataTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT data NAMELINK_COMPONENT development)

# Programs look for the libraries from their own place too.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR BASE_DIRECTORY ${CMAKE_INSTALL_FULL_BINDIR} OUTPUT_VARIABLE bin_to_lib)
set(CMAKE_INSTALL_RPATH "$ORIGIN/${bin_to_lib}")

foreach(folder IN LISTS AVELDORAN_FOLDERS)
    aveldoran_public_headers(${folder} headers)
    install(FILES ${headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/aveldoran/${folder}
        COMPONENT development)
endforeach()

# --- find_package(AveldoranData) ---

# Those that a library uses for itself alone are found too: the exported targets name them.
aveldoran_qt_components(aveldoran LINK_LIBRARIES core_qt)
aveldoran_qt_components(aveldorandata LINK_LIBRARIES data_qt)
set(AVELDORAN_QT_COMPONENTS ${core_qt} ${data_qt})
list(REMOVE_DUPLICATES AVELDORAN_QT_COMPONENTS)
list(JOIN AVELDORAN_QT_COMPONENTS " " AVELDORAN_QT_COMPONENTS)

install(EXPORT AveldoranDataTargets NAMESPACE Aveldoran:: DESTINATION ${aveldoran_package_dir} COMPONENT development)
configure_package_config_file(cmake/AveldoranDataConfig.cmake.in AveldoranDataConfig.cmake
    INSTALL_DESTINATION ${aveldoran_package_dir})
write_basic_package_version_file(AveldoranDataConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/AveldoranDataConfig.cmake
    ${PROJECT_BINARY_DIR}/AveldoranDataConfigVersion.cmake
    DESTINATION ${aveldoran_package_dir} COMPONENT development)

# --- pkg-config ---

# A directory of the installation as seen from its prefix, for a .pc file; an absolute one stays as it is.
function(aveldoran_pc_directory directory result)
    cmake_path(IS_ABSOLUTE directory absolute)
    if(absolute)
        set(${result} ${directory} PARENT_SCOPE)
    else()
        set(${result} "\${prefix}/${directory}" PARENT_SCOPE)
    endif()
endfunction()

# aveldoran_install_pc(TARGET DESCRIPTION REQUIREMENT...)
function(aveldoran_install_pc target description)
    list(JOIN ARGN ", " requirements)
    aveldoran_pc_directory(${CMAKE_INSTALL_LIBDIR} libdir)
    aveldoran_pc_directory(${CMAKE_INSTALL_INCLUDEDIR} includedir)
    set(prefix ${CMAKE_INSTALL_PREFIX})
    cmake_path(IS_ABSOLUTE CMAKE_INSTALL_LIBDIR absolute)
    if(NOT absolute)
        file(RELATIVE_PATH up /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
        string(REGEX REPLACE "/$" "" prefix "\${pcfiledir}/${up}")
    endif()
    configure_file(cmake/library.pc.in ${target}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${target}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT development)
endfunction()

aveldoran_qt_components(aveldoran INTERFACE_LINK_LIBRARIES core_qt)
aveldoran_qt_components(aveldorandata INTERFACE_LINK_LIBRARIES data_qt)
list(TRANSFORM core_qt REPLACE "(.+)" "Qt5\\1 >= 5.15")
list(TRANSFORM data_qt REPLACE "(.+)" "Qt5\\1 >= 5.15")
aveldoran_install_pc(aveldoran "Measurement core of a spectrum-analyser suite" ${core_qt})
aveldoran_install_pc(aveldorandata "${PROJECT_DESCRIPTION}" "aveldoran = ${PROJECT_VERSION}" ${data_qt})
