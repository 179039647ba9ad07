# cmake -D SCRATCH=DIRECTORY -P cmake_form_breaks.cmake
# Gives cmake_form.cmake trees of one file that keep or break the form in one way each.

cmake_minimum_required(VERSION 3.25)

set(failures 0)

# expect(TEXT LINE...): what the check has to say of a file of these lines, empty if it has to pass.
function(expect text)
    file(REMOVE_RECURSE ${SCRATCH})
    list(JOIN ARGN "\n" content)
    file(WRITE ${SCRATCH}/folder/CMakeLists.txt "${content}\n")
    execute_process(
        COMMAND ${CMAKE_COMMAND} -D ROOT=${SCRATCH} -P ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/cmake_form.cmake
        RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    string(FIND "${output}" "${text}" position)
    if((text STREQUAL "" AND status EQUAL 0) OR (NOT text STREQUAL "" AND NOT status EQUAL 0 AND position GREATER -1))
        return()
    endif()
    message(STATUS "'${content}': expected '${text}', status ${status}, got:\n${output}")
    math(EXPR failures "${failures} + 1")
    set(failures ${failures} PARENT_SCOPE)
endfunction()

expect("" "# a comment" "" "add_test(one" "        two)")
expect("" "if(A)" "    add_test(\"(\" b) # (" "else()" "    c()" "endif()")
expect("CMakeLists.txt:1: a comment begins" "#a comment")
expect("CMakeLists.txt:2: b stands 4 columns in, expected 0" "a()" "    b()")
expect("CMakeLists.txt:2: b stands 0 columns in, expected 4" "if(A)" "b()" "endif()")
expect("CMakeLists.txt:3: endif stands 4 columns in, expected 0" "if(A)" "    b()" "    endif()")

if(failures GREATER 0)
    message(FATAL_ERROR "${failures} files were not judged as expected")
endif()
