# Makes the Debian packages, has lintian look at them, unpacks them with dpkg into a root of its own, and there runs the
# program and builds and runs the consumer. All under SCRATCH.

cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/run.cmake)

foreach(tool dpkg lintian fakeroot)
    find_program(${tool} ${tool})
    if(NOT ${tool})
        fail("There is no ${tool}")
    endif()
endforeach()

file(REMOVE_RECURSE ${SCRATCH})
file(MAKE_DIRECTORY ${SCRATCH}/packages)
run(${CMAKE_CPACK_COMMAND} --config ${BUILD_DIR}/CPackConfig.cmake -B ${SCRATCH}/packages)

# --- the packages ---

string(REGEX MATCH "^[0-9]+" major ${VERSION})
set(names libaveldoran${major} libaveldorandata${major} libaveldorandata-dev)
if(PROGRAM)
    list(APPEND names aveldoran-tools)
endif()
set(packages "")
foreach(name IN LISTS names)
    file(GLOB package ${SCRATCH}/packages/${name}_${VERSION}-*.deb)
    list(LENGTH package count)
    if(NOT count EQUAL 1)
        fail("${count} packages are called ${name}")
    endif()
    list(APPEND packages ${package})
endforeach()
run(${lintian} --allow-root --fail-on error ${packages})

# --- unpacked into a root of their own ---

set(root ${SCRATCH}/root)
foreach(directory info updates triggers)
    file(MAKE_DIRECTORY ${root}/var/lib/dpkg/${directory})
endforeach()
file(TOUCH ${root}/var/lib/dpkg/status ${root}/var/lib/dpkg/available)
run(${fakeroot} ${dpkg} --root=${root} --log=${SCRATCH}/dpkg.log --force-not-root --force-depends --unpack ${packages})

set(ENV{HOME} ${SCRATCH}/home)
set(ENV{LC_ALL} C.UTF-8)
set(ENV{QT_QPA_PLATFORM} offscreen)
set(ENV{LD_LIBRARY_PATH} ${root}/usr/${LIBDIR})
if(PROGRAM)
    run(${root}/usr/${PROGRAM} --version)
    expect_in_output("aveldoran ${VERSION}\n")
    run(ldd ${root}/usr/${PROGRAM})
    expect_in_output("=> ${root}/usr/${LIBDIR}/libaveldorandata.so.${major} ")
    if(NOT EXISTS ${root}/usr/share/bash-completion/completions/aveldoran)
        fail("no package has the completion")
    endif()
    foreach(page aveldoran aveldoran-calibration aveldoran-channels aveldoran-devices aveldoran-drive aveldoran-limits
                 aveldoran-logo aveldoran-markers aveldoran-record aveldoran-waterfall aveldoran-waypoints)
        run(gzip -dc ${root}/usr/share/man/man1/${page}.1.gz)
        expect_in_output("\n.SH \"SEE ALSO\"\n.BR aveldoran")
        if(NOT output MATCHES "\n\\.S[HS] \"?E(XAMPLES|xample)" OR output MATCHES "\n\\.HP\n")
            fail("${page}(1) has no example, or one that is torn apart")
        endif()
    endforeach()
endif()

file(WRITE ${SCRATCH}/all_headers.cpp "#include <datamanager/adatamanager.h>\n")
file(COPY ${SOURCE_DIR}/examples/data/profiles DESTINATION ${SCRATCH})
run(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR}/consumer -B ${SCRATCH}/consumer -G ${GENERATOR}
    -D CMAKE_BUILD_TYPE=${CONFIG} -D CMAKE_CXX_COMPILER=${CXX} -D CMAKE_PREFIX_PATH=${root}/usr
    -D ALL_HEADERS=${SCRATCH}/all_headers.cpp)
expect_in_output("in ${root}/usr/${LIBDIR}/cmake/AveldoranData\n")
run(${CMAKE_COMMAND} --build ${SCRATCH}/consumer --config "${CONFIG}")
run(${SCRATCH}/consumer/plan ${SCRATCH}/profiles)
expect_in_output("MHz\n")
