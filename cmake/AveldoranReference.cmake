# The API reference from the public headers: `cmake --build build/release --target reference` writes reference/html.
# A warning of Doxygen is an error, and it warns of what has no comment.

find_program(DOXYGEN doxygen)
find_program(AWK gawk)
mark_as_advanced(DOXYGEN AWK)
if(NOT DOXYGEN OR NOT AWK)
    return()
endif()

set(AVELDORAN_PUBLIC_HEADERS "")
foreach(folder IN LISTS AVELDORAN_FOLDERS)
    aveldoran_public_headers(${folder} headers)
    list(TRANSFORM headers PREPEND ${PROJECT_SOURCE_DIR}/)
    list(APPEND AVELDORAN_PUBLIC_HEADERS ${headers})
endforeach()
list(REMOVE_ITEM AVELDORAN_PUBLIC_HEADERS ${PROJECT_SOURCE_DIR}/core/aveldoranexport.h) # macros for the headers alone
list(JOIN AVELDORAN_PUBLIC_HEADERS " " AVELDORAN_PUBLIC_HEADERS)
configure_file(docs/Doxyfile.in Doxyfile @ONLY)
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/reference)
add_custom_target(reference COMMAND ${DOXYGEN} ${PROJECT_BINARY_DIR}/Doxyfile VERBATIM)
