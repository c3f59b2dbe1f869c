# Takes from the installed programs and libraries what no machine needs to run them, as Debian's own tools do. cpack
# runs this when a package's files are in place; its own stripping leaves the compiler's comments.
find_program(strip strip REQUIRED)
foreach(pattern IN ITEMS usr/bin/* usr/lib/*.so)
    file(GLOB_RECURSE files
        ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${pattern}
        ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*/${pattern})
    foreach(file IN LISTS files)
        execute_process(COMMAND ${strip} --strip-unneeded --remove-section=.comment --remove-section=.note ${file}
            COMMAND_ERROR_IS_FATAL ANY)
    endforeach()
endforeach()
