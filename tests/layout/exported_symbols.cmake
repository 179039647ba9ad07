# Compares what a library exports with the list of its interface: LIBRARY, LIST, NM. A change of the list is a change of
# the binary interface that users have linked to; -D UPDATE=ON writes it anew.

cmake_minimum_required(VERSION 3.25)
set(ENV{LC_ALL} C.UTF-8)

execute_process(COMMAND ${NM} --dynamic --defined-only --demangle --format=posix ${LIBRARY}
    OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE " [A-Za-z] [0-9a-f]+( [0-9a-f]*)?\n" "\n" output "${output}")
string(REGEX REPLACE ";|\\[|\\]" "_" output "${output}")
string(REPLACE "\n" ";" symbols "${output}")
list(REMOVE_ITEM symbols "" "__bss_start" "_end" "_edata" "_init" "_fini")
list(FILTER symbols EXCLUDE REGEX "^typeinfo name for ") # each has its typeinfo
list(REMOVE_DUPLICATES symbols) # the two forms of a constructor
list(SORT symbols)

if(UPDATE)
    list(JOIN symbols "\n" text)
    file(WRITE ${LIST} "${text}\n")
    return()
endif()

file(STRINGS ${LIST} expected)
set(gone ${expected})
list(REMOVE_ITEM gone ${symbols})
set(new ${symbols})
list(REMOVE_ITEM new ${expected})
foreach(symbol IN LISTS gone)
    message("- ${symbol}")
endforeach()
foreach(symbol IN LISTS new)
    message("+ ${symbol}")
endforeach()
if(gone OR new)
    message(FATAL_ERROR "The exported symbols differ from ${LIST}.\nIf they are meant to:\n"
        "cmake -D LIBRARY=${LIBRARY} -D LIST=${LIST} -D NM=${NM} -D UPDATE=ON -P ${CMAKE_CURRENT_LIST_FILE}")
endif()
