# What every test includes takes longer to read than most tests themselves, so it is read once: for those with widgets
# and for those without, since it depends on that. It depends on Qt5::Network, too, which few have.
function(aveldoran_add_test_header name)
    file(CONFIGURE OUTPUT ${name}.cpp CONTENT "")
    add_library(${name} OBJECT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
    target_link_libraries(${name} PRIVATE Aveldoran::Core ${ARGN} Qt5::Test)
    target_precompile_headers(${name} PRIVATE <QtTest/QtTest>)
    set_target_properties(${name} PROPERTIES AUTOMOC OFF)
endfunction()
aveldoran_add_test_header(test_header)
aveldoran_add_test_header(test_header_widgets Qt5::Widgets)

# aveldoran_add_test(NAME [LAUNCHER PROGRAM] [LIBRARIES ...] [SOURCES ...])
# One Qt Test program, NAME.cpp beside the CMakeLists.txt, run by CTest on the offscreen platform in a home of its own,
# so that no test sees or leaves settings of the user. A launcher runs the program that it is given.
function(aveldoran_add_test name)
    cmake_parse_arguments(arg "" "LAUNCHER" "LIBRARIES;SOURCES" ${ARGN})
    add_executable(${name} ${name}.cpp ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE Aveldoran::Core ${arg_LIBRARIES} Qt5::Test)
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_compile_definitions(${name} PRIVATE AVELDORAN_EXAMPLES_DIR="${PROJECT_SOURCE_DIR}/examples")
    # Sources of other folders are built as there, so that the tools for static checks can build them.
    set_source_files_properties(${arg_SOURCES} PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
    if(NOT "Qt5::Network" IN_LIST arg_LIBRARIES)
        if("${arg_LIBRARIES}" MATCHES "Aveldoran::Data|Qt5::Widgets|aveldoran_program_parts")
            target_precompile_headers(${name} REUSE_FROM test_header_widgets)
        else()
            target_precompile_headers(${name} REUSE_FROM test_header)
        endif()
    endif()
    add_test(NAME ${name} COMMAND ${arg_LAUNCHER} $<TARGET_FILE:${name}>)
    set_tests_properties(${name} PROPERTIES ENVIRONMENT
        "QT_QPA_PLATFORM=offscreen;HOME=${CMAKE_CURRENT_BINARY_DIR}/${name}.home;XDG_CONFIG_HOME=;XDG_DATA_HOME=;LC_ALL=C.UTF-8;ASAN_OPTIONS=detect_leaks=1;LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/leaks.supp:print_suppressions=0")
    if(arg_LAUNCHER) # which may preload a library before the sanitizer's
        set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT "ASAN_OPTIONS=detect_leaks=1:verify_asan_link_order=0")
    endif()
    file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/${name}.home)
endfunction()

# aveldoran_add_scaled_test(NAME): the program of the test NAME again, on a screen of double density.
function(aveldoran_add_scaled_test name)
    get_test_property(${name} ENVIRONMENT environment)
    add_test(NAME ${name}_scaled COMMAND ${name})
    set_tests_properties(${name}_scaled PROPERTIES ENVIRONMENT "${environment};QT_SCALE_FACTOR=2")
endfunction()

# aveldoran_add_usb_test(NAME ...): the same with USB devices of its own making (tests/core/usbtestbed.h). Without
# umockdev it counts as skipped and builds nothing.
include(AveldoranUmockdev)
function(aveldoran_add_usb_test name)
    if(AVELDORAN_HAS_UMOCKDEV)
        cmake_parse_arguments(arg "" "" "LIBRARIES" ${ARGN})
        aveldoran_add_test(${name} LAUNCHER ${UMOCKDEV_WRAPPER} LIBRARIES ${arg_LIBRARIES} PkgConfig::UMOCKDEV
            ${arg_UNPARSED_ARGUMENTS})
    else()
        message(STATUS "umockdev is missing: ${name} is skipped")
        add_test(NAME ${name} COMMAND ${CMAKE_COMMAND} -E echo "SKIPPED: umockdev is missing")
        set_tests_properties(${name} PROPERTIES SKIP_REGULAR_EXPRESSION "^SKIPPED")
    endif()
endfunction()
