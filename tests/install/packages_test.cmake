# Makes the Debian packages, has lintian look at them, holds what they depend on, unpacks them with dpkg into a root of
# its own, and there runs the program and builds and runs the consumer. All under SCRATCH.

cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/run.cmake)

foreach(tool dpkg dpkg-deb fakeroot lintian objdump)
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
# The scripts that call ldconfig are CPack's own, and no bug of Debian's asks for these packages.
run(${lintian} --allow-root --fail-on error,warning
    --suppress-tags initial-upload-closes-no-bugs,maintscript-calls-ldconfig ${packages})

# --- unpacked into a root of their own ---

set(root ${SCRATCH}/root)
foreach(directory info updates triggers)
    file(MAKE_DIRECTORY ${root}/var/lib/dpkg/${directory})
endforeach()
file(TOUCH ${root}/var/lib/dpkg/status ${root}/var/lib/dpkg/available)
run(${fakeroot} ${dpkg} --root=${root} --log=${SCRATCH}/dpkg.log --force-not-root --force-depends --unpack ${packages})

# --- what they depend on ---

# packages_of_needed(FILE RESULT): the packages of this system that have what a library or program was linked to.
function(packages_of_needed file result)
    run(${objdump} -p ${file})
    string(REGEX MATCHALL "NEEDED +[^\n]+" lines "${output}")
    run(ldd ${file})
    set(places "${output}")
    set(packages "")
    foreach(line IN LISTS lines)
        string(REGEX REPLACE "NEEDED +" "" soname "${line}")
        if(NOT soname MATCHES "^libaveldoran")
            string(REPLACE "+" "[+]" pattern "${soname}")
            if(NOT places MATCHES "${pattern} => ([^ ]+) ")
                fail("${soname} is not found")
            endif()
            run(${dpkg} --search *${CMAKE_MATCH_1}) # below / as below /usr
            string(REGEX MATCH "^[^:]+" package "${output}")
            list(APPEND packages ${package})
        endif()
    endforeach()
    list(REMOVE_DUPLICATES packages)
    set(${result} ${packages} PARENT_SCOPE)
endfunction()

# expect_depends(PACKAGE FILE DEPENDENCY...): the package depends on these, on those that FILE needs, if one is given, and
# on nothing else.
function(expect_depends package file)
    file(GLOB path ${SCRATCH}/packages/${package}_*.deb)
    run(${dpkg-deb} --field ${path} Depends)
    string(STRIP "${output}" depends)
    string(REPLACE ", " ";" depends "${depends}")
    foreach(dependency IN LISTS ARGN)
        if(NOT dependency IN_LIST depends)
            fail("${package} doesn't depend on ${dependency}")
        endif()
        list(REMOVE_ITEM depends ${dependency})
    endforeach()
    set(needed "")
    if(file)
        packages_of_needed(${root}/usr/${file} needed)
    endif()
    foreach(name IN LISTS needed)
        set(found ${depends})
        string(REPLACE "+" "[+]" pattern "${name}")
        list(FILTER found INCLUDE REGEX "^${pattern}( |$)")
        if(NOT found)
            fail("${package} doesn't depend on ${name}")
        endif()
        list(REMOVE_ITEM depends ${found})
    endforeach()
    if(depends)
        fail("${package} depends on ${depends} without need")
    endif()
endfunction()

set(same "(= ${VERSION}-1)")
set(core "libaveldoran${major} ${same}")
set(data "libaveldorandata${major} ${same}")
expect_depends(libaveldoran${major} ${LIBDIR}/libaveldoran.so.${major})
expect_depends(libaveldorandata${major} ${LIBDIR}/libaveldorandata.so.${major} ${core})
expect_depends(libaveldorandata-dev "" ${core} ${data} "qtbase5-dev (>= 5.15)")
if(PROGRAM)
    expect_depends(aveldoran-tools ${PROGRAM} ${core} ${data})
endif()

# What other packages that are linked to the libraries will depend on, and the loader's cache.
foreach(library aveldoran aveldorandata)
    file(GLOB path ${SCRATCH}/packages/lib${library}${major}_*.deb)
    run(${dpkg-deb} --info ${path} shlibs triggers)
    expect_in_output("lib${library} ${major} lib${library}${major} (>= ${VERSION}")
    expect_in_output("activate-noawait ldconfig")
endforeach()

# --- used ---

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
        if(NOT output MATCHES "\n\\.SH EXAMPLES\n\\.IP\n" OR output MATCHES "\n\\.(SS|HP)[ \n]")
            fail("${page}(1) has no examples, or one that is torn apart, or a heading that is no section")
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
