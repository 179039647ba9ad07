# Debian packages, one for each component of the installation: `cpack --config build/release/CPackConfig.cmake`. Built
# from any build of the tree; dpkg-shlibdeps finds out what they depend on.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR "Aveldoran Data maintainers")
set(CPACK_PACKAGE_CONTACT "Aveldoran Data maintainers <maintainers@aveldoran.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL core data development)
if(AVELDORAN_BUILD_APPS)
    list(APPEND CPACK_COMPONENTS_ALL tools)
endif()
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # would stand before the description of each package
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/core ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/package_binaries.cmake)

# aveldoran_package(COMPONENT NAME SECTION SUMMARY DESCRIPTION)
macro(aveldoran_package component name section summary description)
    string(TOUPPER ${component} upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
    set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}\n${description}")
    install(FILES ${PROJECT_BINARY_DIR}/debian/changelog.Debian.gz ${PROJECT_SOURCE_DIR}/cmake/debian/copyright
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name} COMPONENT ${component})
endmacro()

set(suite "Aveldoran Data reads, shows and writes what surrounds a spectrum measurement:
profiles and channel plans, limits, calibrations, markers, recordings and
positions.")
set(major ${PROJECT_VERSION_MAJOR})
aveldoran_package(core libaveldoran${major} libs "measurement core of a spectrum-analyser suite"
    "${suite}\n.\nThis package has the core library: values, data objects with their files,\ndevices and recordings.")
aveldoran_package(data libaveldorandata${major} libs "data and model layer of a spectrum-analyser suite"
    "${suite}\n.\nThis package has the library of models, delegates and documents.")
aveldoran_package(development libaveldorandata-dev libdevel "data and model layer of a spectrum-analyser suite (development)"
    "${suite}\n.\nThis package has the headers of both libraries.")
aveldoran_package(tools aveldoran-tools science "command-line program of a spectrum-analyser suite"
    "${suite}\n.\nThis package has the program aveldoran.")

set(same "(= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
set(CPACK_DEBIAN_DATA_PACKAGE_DEPENDS "libaveldoran${major} ${same}")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "libaveldoran${major} ${same}, libaveldorandata${major} ${same}, qtbase5-dev (>= 5.15)")
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "libaveldoran${major} ${same}, libaveldorandata${major} ${same}")
# The loader's cache knows the libraries once their package is unpacked.
set(CPACK_DEBIAN_CORE_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_DEBIAN_DATA_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)

file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/debian)
execute_process(COMMAND gzip -9 --no-name --stdout ${PROJECT_SOURCE_DIR}/cmake/debian/changelog
    OUTPUT_FILE ${PROJECT_BINARY_DIR}/debian/changelog.Debian.gz COMMAND_ERROR_IS_FATAL ANY)

include(CPack)
