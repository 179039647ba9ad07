# cmake -D SCRATCH=DIRECTORY -P cmake_form_breaks.cmake
# Gives cmake_form.cmake trees of one file that keep or break the form in one way each.

cmake_minimum_required(VERSION 3.25)

include(${CMAKE_CURRENT_LIST_DIR}/rulebreaks.cmake)

# expect(TEXT LINE...): what the check has to say of a file of these lines, empty if it has to pass.
function(expect text)
    file(REMOVE_RECURSE ${SCRATCH})
    expect_verdict(cmake_form.cmake "${text}" folder/CMakeLists.txt "${ARGN}")
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
