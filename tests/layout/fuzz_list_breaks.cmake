# cmake -D SCRATCH=DIRECTORY -P fuzz_list_breaks.cmake
# Gives fuzz_list.cmake trees of one target that are complete or lack one thing each.

cmake_minimum_required(VERSION 3.25)

include(${CMAKE_CURRENT_LIST_DIR}/rulebreaks.cmake)

# expect(TEXT FILE LINE...): what the check has to say where FILE consists of these lines, empty if it has to pass.
function(expect text file)
    file(REMOVE_RECURSE ${SCRATCH})
    file(WRITE ${SCRATCH}/fuzz/README.md "# Targets\n| `one` | reader |\n")
    file(WRITE ${SCRATCH}/fuzz/CMakeLists.txt "# Targets\naveldoran_add_fuzz_target(one Library)\n")
    file(WRITE ${SCRATCH}/fuzz/fuzz_one.cpp "")
    file(WRITE ${SCRATCH}/fuzz/corpus/one/input "")
    expect_verdict(fuzz_list.cmake "${text}" ${file} "${ARGN}")
    set(failures ${failures} PARENT_SCOPE)
endfunction()

expect("" fuzz/fuzz_one.cpp)
expect("doesn't list two" fuzz/fuzz_two.cpp)
expect("doesn't build fuzz_two" fuzz/fuzz_two.cpp)
expect("corpus/two/ has no input" fuzz/fuzz_two.cpp)
expect("doesn't list one" fuzz/README.md "# Targets")
expect("lists two, which doesn't exist" fuzz/README.md "" "| `one` | reader |" "| `two` | reader |")
expect("doesn't build fuzz_one" fuzz/CMakeLists.txt "" "aveldoran_add_fuzz_target(other)")

if(failures GREATER 0)
    message(FATAL_ERROR "${failures} trees were not judged as expected")
endif()
