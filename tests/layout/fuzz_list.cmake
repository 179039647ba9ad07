# cmake -D ROOT=DIRECTORY -P fuzz_list.cmake
# Holds that each fuzz target of the tree at ROOT is built, has inputs, and stands in the list of fuzz/README.md, and
# that the list has no others.

cmake_minimum_required(VERSION 3.25)

include(${CMAKE_CURRENT_LIST_DIR}/rule.cmake)

file(READ ${ROOT}/fuzz/README.md readme)
file(READ ${ROOT}/fuzz/CMakeLists.txt lists)
file(GLOB names RELATIVE ${ROOT}/fuzz ${ROOT}/fuzz/fuzz_*.cpp)
list(TRANSFORM names REPLACE "^fuzz_(.*)\\.cpp$" "\\1")

foreach(name IN LISTS names)
    if(NOT readme MATCHES "\n\\| `${name}` \\|")
        report("fuzz/README.md doesn't list ${name}")
    endif()
    if(NOT lists MATCHES "\naveldoran_add_fuzz_target\\(${name}[ )]")
        report("fuzz/CMakeLists.txt doesn't build fuzz_${name}")
    endif()
    file(GLOB inputs ${ROOT}/fuzz/corpus/${name}/*)
    if(NOT inputs)
        report("fuzz/corpus/${name}/ has no input")
    endif()
endforeach()

string(REGEX MATCHALL "\n\\| `[a-z]+`" rows "${readme}")
foreach(row IN LISTS rows)
    string(REGEX REPLACE "[^a-z]" "" name "${row}")
    if(NOT name IN_LIST names)
        report("fuzz/README.md lists ${name}, which doesn't exist")
    endif()
endforeach()

if(NOT names)
    report("there are no fuzz targets")
endif()
if(breaks GREATER 0)
    message(FATAL_ERROR "${breaks} entries are missing or too many")
endif()
