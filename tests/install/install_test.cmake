# Installs the built tree, moves the installation away, runs the installed program, and builds and runs the consumer
# against the installation: with find_package, then with pkg-config and the plain compiler. All under SCRATCH.

cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/run.cmake)
include(${SOURCE_DIR}/cmake/AveldoranLayout.cmake)

set(consumer ${CMAKE_CURRENT_LIST_DIR}/consumer)
set(installed_at ${SCRATCH}/installed-here)
set(prefix ${SCRATCH}/moved/there)
set(libdir ${prefix}/${LIBDIR})
set(includedir ${prefix}/${INCLUDEDIR}/aveldoran)

# --- install, and move ---

file(REMOVE_RECURSE ${SCRATCH})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --config "${CONFIG}" --prefix ${installed_at})
file(MAKE_DIRECTORY ${SCRATCH}/moved)
file(RENAME ${installed_at} ${prefix})

# --- the files ---

string(REGEX MATCH "^[0-9]+" major ${VERSION})
foreach(library aveldoran aveldorandata)
    foreach(file lib${library}.so lib${library}.so.${major} lib${library}.so.${VERSION} pkgconfig/${library}.pc)
        if(NOT EXISTS ${libdir}/${file})
            fail("${LIBDIR}/${file} is not installed")
        endif()
    endforeach()
endforeach()

# A program need not link the core library for the other one to find it.
run(ldd ${libdir}/libaveldorandata.so)
expect_in_output("libaveldoran.so.${major} => ${libdir}/libaveldoran.so.${major} ")

set(all_headers "")
foreach(folder IN LISTS AVELDORAN_FOLDERS)
    file(GLOB headers RELATIVE ${SOURCE_DIR} ${SOURCE_DIR}/${folder}/*.h)
    foreach(header IN LISTS headers)
        if(header IN_LIST AVELDORAN_PRIVATE_HEADERS)
            continue()
        endif()
        if(NOT EXISTS ${includedir}/${header})
            fail("${header} is not installed")
        endif()
        string(APPEND all_headers "#include <${header}>\n")
    endforeach()
endforeach()
foreach(header IN LISTS AVELDORAN_PRIVATE_HEADERS)
    if(EXISTS ${includedir}/${header})
        fail("The private header ${header} is installed")
    endif()
endforeach()
if(all_headers STREQUAL "")
    fail("There is no public header")
endif()
file(WRITE ${SCRATCH}/all_headers.cpp "${all_headers}")

file(GLOB descriptions ${libdir}/cmake/AveldoranData/*.cmake ${libdir}/pkgconfig/*.pc)
foreach(description IN LISTS descriptions)
    file(READ ${description} text)
    foreach(path ${installed_at} ${BUILD_DIR} ${SOURCE_DIR})
        string(FIND "${text}" "${path}" position)
        if(position GREATER -1)
            fail("${description} names ${path} and can't be moved")
        endif()
    endforeach()
endforeach()

# --- what the program has to say ---

file(WRITE ${SCRATCH}/profiles/fm.profile [[
<?xml version="1.0" encoding="UTF-8"?>
<profile id="fm">
  <label>FM broadcast</label>
  <begin>87.5 MHz</begin>
  <end>108 MHz</end>
  <channels>
    <range label="Lower half"><begin>87.5 MHz</begin><end>98 MHz</end></range>
  </channels>
</profile>
]])
set(plan "    FM broadcast 87.500000 MHz\n      Lower half 87.500000 MHz\n")
set(sum "88.200000 MHz\n")
set(ENV{QT_QPA_PLATFORM} offscreen)
set(ENV{QT_LOGGING_TO_CONSOLE} 1)
set(ENV{LC_ALL} C.UTF-8)
set(ENV{HOME} ${SCRATCH}/home)
unset(ENV{LD_LIBRARY_PATH})

# --- the installed program ---

if(PROGRAM)
    run(${prefix}/${PROGRAM} channels ${SCRATCH}/profiles)
    expect_in_output("FM broadcast")
endif()

# --- with find_package ---

set(build ${SCRATCH}/with-cmake)
run(${CMAKE_COMMAND} -S ${consumer} -B ${build} -G ${GENERATOR} -D CMAKE_BUILD_TYPE=${CONFIG}
    -D CMAKE_CXX_COMPILER=${CXX} -D CMAKE_PREFIX_PATH=${prefix} -D ALL_HEADERS=${SCRATCH}/all_headers.cpp)
expect_in_output("Found AveldoranData ${VERSION} in ${libdir}/cmake/AveldoranData\n")
run(${CMAKE_COMMAND} --build ${build} --config "${CONFIG}")
run(${build}/plan ${SCRATCH}/profiles)
expect_in_output("${plan}")
run(${build}/core_only)
expect_in_output("${sum}")

# --- with pkg-config ---

find_program(pkg_config NAMES pkg-config pkgconf)
if(NOT pkg_config)
    fail("There is no pkg-config")
endif()
set(ENV{PKG_CONFIG_PATH} ${libdir}/pkgconfig)

# compile(LIBRARY OUTPUT SOURCE...)
function(compile library result)
    run(${pkg_config} --modversion ${library})
    if(NOT output STREQUAL "${VERSION}\n")
        fail("${library}.pc is of another version: ${output}")
    endif()
    run(${pkg_config} --cflags --libs ${library})
    separate_arguments(flags UNIX_COMMAND "${output}")
    run(${CXX} -fPIC ${ARGN} -o ${result} ${flags} -Wl,-rpath,${libdir})
endfunction()

compile(aveldorandata ${SCRATCH}/plan ${consumer}/main.cpp ${SCRATCH}/all_headers.cpp)
run(${SCRATCH}/plan ${SCRATCH}/profiles)
expect_in_output("${plan}")
compile(aveldoran ${SCRATCH}/core_only ${consumer}/core_only.cpp)
run(${SCRATCH}/core_only)
expect_in_output("${sum}")

# --- the README shows this very program, and how it is built ---

file(READ ${SOURCE_DIR}/README.md readme)
file(READ ${consumer}/main.cpp program)
string(FIND "${readme}" "```cpp\n${program}```" position)
if(position EQUAL -1)
    fail("README.md shows another program than tests/install/consumer/main.cpp")
endif()
file(READ ${consumer}/CMakeLists.txt lists)
string(REGEX REPLACE "\n# What follows.*" "" lists "${lists}")
string(FIND "${readme}" "```cmake\n${lists}```" position)
if(position EQUAL -1)
    fail("README.md shows another CMakeLists.txt than tests/install/consumer/")
endif()
