# What the scripts of this folder share.

function(fail text)
    message("${text}")
    message(FATAL_ERROR "failed")
endfunction()

# run(COMMAND ARGUMENT...) shows the output in any case and sets `output`.
function(run)
    list(JOIN ARGN " " shown)
    message(STATUS "${shown}")
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE text ERROR_VARIABLE text)
    message("${text}")
    if(NOT status EQUAL 0)
        fail("Ended with ${status}: ${shown}")
    endif()
    set(output "${text}" PARENT_SCOPE)
endfunction()

function(expect_in_output expected)
    string(FIND "${output}" "${expected}" position)
    if(position EQUAL -1)
        fail("The output has no line '${expected}'")
    endif()
endfunction()
