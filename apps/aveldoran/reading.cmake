# What the program reads traces with, as a library that needs no Qwt: a fuzz target links it also where the program is
# not built.

include_guard(GLOBAL)

add_library(aveldoran_program_reading STATIC
    ${CMAKE_CURRENT_LIST_DIR}/console.cpp
    ${CMAKE_CURRENT_LIST_DIR}/tracefile.cpp
    ${CMAKE_CURRENT_LIST_DIR}/valuereading.cpp
    ${CMAKE_CURRENT_LIST_DIR}/valuetext.cpp)
target_compile_definitions(aveldoran_program_reading PRIVATE QT_NO_CAST_FROM_ASCII)
target_link_libraries(aveldoran_program_reading PUBLIC Aveldoran::Core)
