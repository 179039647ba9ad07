# aveldoran_add_library(TARGET EXPORT_NAME BUILD_DEFINITION)
# A shared library of the suite: versioned, with hidden visibility, known as Aveldoran::EXPORT_NAME, its include root
# the root of the repository. Each subsystem folder adds its own sources with target_sources.
function(aveldoran_add_library target export_name build_definition)
    add_library(${target} SHARED)
    add_library(Aveldoran::${export_name} ALIAS ${target})
    set_target_properties(${target} PROPERTIES
        EXPORT_NAME ${export_name}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR})
    target_compile_features(${target} PUBLIC cxx_std_17)
    target_compile_definitions(${target} PRIVATE ${build_definition} QT_NO_CAST_FROM_ASCII)
    # Under clang the sanitizers' own symbols come with the program.
    if(NOT (CMAKE_CXX_COMPILER_ID MATCHES "Clang" AND (AVELDORAN_SANITIZERS OR AVELDORAN_FUZZ)))
        target_link_options(${target} PRIVATE -Wl,--no-undefined)
    endif()
    target_link_options(${target} PRIVATE -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map)
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map)
    target_include_directories(${target} PUBLIC
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/aveldoran>)
endfunction()
