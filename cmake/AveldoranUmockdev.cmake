# Looks for umockdev, which gives a program a system whose USB devices come and go as it says: UMOCKDEV_WRAPPER runs such
# a program, which links PkgConfig::UMOCKDEV. AVELDORAN_HAS_UMOCKDEV tells whether both are there.

find_package(PkgConfig)
find_program(UMOCKDEV_WRAPPER umockdev-wrapper)
mark_as_advanced(UMOCKDEV_WRAPPER)
if(PkgConfig_FOUND AND NOT TARGET PkgConfig::UMOCKDEV)
    pkg_check_modules(UMOCKDEV IMPORTED_TARGET GLOBAL umockdev-1.0)
endif()
set(AVELDORAN_HAS_UMOCKDEV FALSE)
if(UMOCKDEV_WRAPPER AND TARGET PkgConfig::UMOCKDEV)
    set(AVELDORAN_HAS_UMOCKDEV TRUE)
endif()
