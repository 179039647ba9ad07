# Runs the program of a page and looks for what it prints on that page: PROGRAM, PAGE, DIRECTORY.

cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${PROGRAM} WORKING_DIRECTORY ${DIRECTORY}
    OUTPUT_VARIABLE output ERROR_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
message("${output}")
string(REGEX REPLACE " +\n" "\n" output "${output}") # editors take blanks at the end of a line away
if(NOT output MATCHES "[^\n]")
    message(FATAL_ERROR "The program prints nothing")
endif()

file(READ ${PAGE} text)
string(REGEX REPLACE "\n$" "" output "${output}")
if(output MATCHES "\n")
    string(REPLACE "\n" "\n    " output "${output}")
    set(output "\n\n    ${output}\n\n")
endif()
string(FIND "${text}" "${output}" position)
if(position EQUAL -1)
    message(FATAL_ERROR "${PAGE} shows another output")
endif()
