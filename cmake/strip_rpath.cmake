# In a package the libraries lie where the loader looks for them, so their run paths go. Read by cpack, which has
# installed the components below CPACK_TEMPORARY_DIRECTORY.
file(GLOB_RECURSE files ${CPACK_TEMPORARY_DIRECTORY}/*/usr/bin/* ${CPACK_TEMPORARY_DIRECTORY}/*/usr/lib/*.so.*)
foreach(file IN LISTS files)
    if(NOT IS_SYMLINK ${file})
        file(RPATH_REMOVE FILE ${file})
    endif()
endforeach()
