# quillet_no_images(TARGET): a library by the name of the one with which the kernel's viewer reads picture files, in
# which every function answers null, as that one does for a file that isn't a picture. The kernel's exchange stands on
# its viewer, and the image library on the codecs of thirty formats: a worker that reads no pictures starts a seventh
# faster, and is 4 MB smaller, with this one in its place. Its functions are those that the installed kernel names. Where
# the kernel is built without pictures, or can't be looked into, there is no TARGET, and workers use what is installed.
function(quillet_no_images target)
    find_library(QUILLET_KERNEL_VIEWER TKService)
    mark_as_advanced(QUILLET_KERNEL_VIEWER)
    if(NOT QUILLET_KERNEL_VIEWER OR NOT CMAKE_NM OR NOT CMAKE_OBJDUMP)
        return()
    endif()
    execute_process(COMMAND ${CMAKE_OBJDUMP} -p ${QUILLET_KERNEL_VIEWER} OUTPUT_VARIABLE needed ERROR_QUIET)
    execute_process(COMMAND ${CMAKE_NM} -D --undefined-only ${QUILLET_KERNEL_VIEWER} OUTPUT_VARIABLE undefined ERROR_QUIET)
    string(REGEX MATCH "libfreeimage\\.so\\.([0-9]+)" found "${needed}")
    set(version ${CMAKE_MATCH_1})
    string(REGEX MATCHALL "FreeImage_[A-Za-z0-9]+" functions "${undefined}")
    list(REMOVE_DUPLICATES functions)
    if(NOT found OR NOT functions)
        return()
    endif()
    set(source "")
    foreach(name ${functions})
        string(APPEND source "extern \"C\" void* ${name}() { return nullptr; }\n")
    endforeach()
    file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp CONTENT "${source}" @ONLY)
    add_library(${target} SHARED ${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp)
    set_target_properties(${target} PROPERTIES
        OUTPUT_NAME freeimage
        SOVERSION ${version}
        LIBRARY_OUTPUT_DIRECTORY ${QUILLET_ROOT}/lib/no-images)
endfunction()
