# Makes manual pages of a program and each of its commands from what their --help says: PAGES/NAME.1.gz and
# PAGES/NAME-COMMAND.1.gz. Variables: PROGRAM, VERSION, HELP2MAN, PAGES.

cmake_minimum_required(VERSION 3.25)
set(ENV{LC_ALL} C.UTF-8)
get_filename_component(program ${PROGRAM} NAME)

# page(NAME SUMMARY COMMAND...)
function(page name summary)
    set(command ${ARGN})
    list(JOIN command " " shown)
    execute_process(
        COMMAND ${HELP2MAN} --no-info --version-string ${VERSION} --name ${summary} "${shown}"
        OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
    string(TOUPPER ${name} title)
    string(REGEX REPLACE "\n\\.TH [^\n]*" "\n.TH ${title} 1 \"\" \"${program} ${VERSION}\" \"User Commands\"" text "${text}")
    string(REGEX REPLACE "\n\\.SH NAME\n[^\n]*" "\n.SH NAME\n${name} \\\\- ${summary}" text "${text}")
    file(WRITE ${PAGES}/${name}.1 "${text}")
    execute_process(COMMAND gzip -9 --no-name --force ${PAGES}/${name}.1 COMMAND_ERROR_IS_FATAL ANY)
endfunction()

execute_process(COMMAND ${PROGRAM} --help OUTPUT_VARIABLE help COMMAND_ERROR_IS_FATAL ANY)
if(NOT help MATCHES "\nCommands:\n(.*)\n\nOptions:")
    message(FATAL_ERROR "${program} --help names no commands")
endif()
string(REPLACE "\n" ";" commands "${CMAKE_MATCH_1}")

file(REMOVE_RECURSE ${PAGES})
foreach(line IN LISTS commands)
    if(line MATCHES "^ +([a-z]+) +(.+)$")
        page(${program}-${CMAKE_MATCH_1} "${CMAKE_MATCH_2}" ${PROGRAM} ${CMAKE_MATCH_1})
    endif()
endforeach()
page(${program} "work on the files that surround a spectrum measurement" ${PROGRAM})
