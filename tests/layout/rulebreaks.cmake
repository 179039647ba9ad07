# What the tests of the rules of form share. The including file has set SCRATCH, a directory for small trees.

set(failures 0)

# expect_verdict(RULE TEXT FILE LINE...): the tree at SCRATCH, in which FILE is to consist of these lines, is given to
# the script RULE. TEXT is what that has to say, empty if it has to pass.
function(expect_verdict rule text file)
    list(JOIN ARGN "\n" content)
    file(WRITE ${SCRATCH}/${file} "${content}\n")
    execute_process(
        COMMAND ${CMAKE_COMMAND} -D ROOT=${SCRATCH} -P ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/${rule}
        RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    string(FIND "${output}" "${text}" position)
    if((text STREQUAL "" AND status EQUAL 0) OR (NOT text STREQUAL "" AND NOT status EQUAL 0 AND position GREATER -1))
        return()
    endif()
    message(STATUS "${file} of '${content}': expected '${text}', status ${status}, got:\n${output}")
    math(EXPR failures "${failures} + 1")
    set(failures ${failures} PARENT_SCOPE)
endfunction()
