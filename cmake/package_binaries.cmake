# In a package the libraries lie where the loader looks for them, so their run paths go, and with them the compiler's
# notes. Read by cpack, which has installed the components below CPACK_TEMPORARY_DIRECTORY.
find_program(STRIP strip REQUIRED)
file(GLOB_RECURSE files ${CPACK_TEMPORARY_DIRECTORY}/*/usr/bin/* ${CPACK_TEMPORARY_DIRECTORY}/*/usr/lib/*.so.*)
foreach(file IN LISTS files)
    if(NOT IS_SYMLINK ${file})
        file(RPATH_REMOVE FILE ${file})
        execute_process(COMMAND ${STRIP} --strip-unneeded --remove-section=.comment --remove-section=.note ${file}
            COMMAND_ERROR_IS_FATAL ANY)
    endif()
endforeach()
