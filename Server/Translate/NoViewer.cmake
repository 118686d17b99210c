# quillet_no_viewer(LIST): libraries by the names of those with which the kernel's viewer reads picture files, writes
# text and talks to the X server, in which every function answers null. The kernel's exchange stands on its viewer, and
# these on the codecs of thirty formats and whatever a window needs; a worker has no use for any of it. With these in
# their place it starts a fifth faster and is 5 MB smaller. Their functions are those that the installed kernel names,
# and LIST gets their targets. Where the kernel is built without them, or can't be looked into, there is none, and
# workers use what is installed.
function(quillet_no_viewer list)
    set(targets "")
    find_library(QUILLET_KERNEL_VIEWER TKService)
    mark_as_advanced(QUILLET_KERNEL_VIEWER)
    if(QUILLET_KERNEL_VIEWER AND CMAKE_NM AND CMAKE_OBJDUMP)
        execute_process(COMMAND ${CMAKE_OBJDUMP} -p ${QUILLET_KERNEL_VIEWER} OUTPUT_VARIABLE needed ERROR_QUIET)
        execute_process(COMMAND ${CMAKE_NM} -D --undefined-only ${QUILLET_KERNEL_VIEWER}
            OUTPUT_VARIABLE undefined ERROR_QUIET)
        foreach(row "freeimage FreeImage_" "freetype FT_" "fontconfig Fc[A-Z]" "X11 X[A-Z]")
            separate_arguments(row)
            list(GET row 0 library)
            list(GET row 1 beginning)
            string(REGEX MATCH "lib${library}\\.so\\.([0-9]+)" found "${needed}")
            set(version ${CMAKE_MATCH_1})
            string(REGEX MATCHALL " ${beginning}[A-Za-z0-9_]+" functions "${undefined}")
            if(found AND functions)
                list(REMOVE_DUPLICATES functions)
                set(source "")
                foreach(name ${functions})
                    string(STRIP ${name} name)
                    string(APPEND source "extern \"C\" void* ${name}() { return nullptr; }\n")
                endforeach()
                set(target quillet-no-${library})
                file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp CONTENT "${source}" @ONLY)
                add_library(${target} SHARED ${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp)
                set_target_properties(${target} PROPERTIES
                    OUTPUT_NAME ${library}
                    SOVERSION ${version}
                    LIBRARY_OUTPUT_DIRECTORY ${QUILLET_ROOT}/lib/no-viewer)
                quillet_install_library(${target} no-viewer)
                list(APPEND targets ${target})
            endif()
        endforeach()
    endif()
    set(${list} ${targets} PARENT_SCOPE)
endfunction()
