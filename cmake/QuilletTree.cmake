# The tree of a running Quillet. In the build it stands in QUILLET_ROOT, and an installation has the same below
# QUILLET_INSTALL_ROOT: the program finds everything from where its own libraries lie. What these helpers put into the one
# they install into the other. Of an installation only these stand elsewhere:
#   bin/quillet                 a link to the program
#   share/applications, icons   what desktops look for; the tree has a link to the icons
#   share/doc/quillet           for people

include(GNUInstallDirs)

set(QUILLET_ROOT ${CMAKE_BINARY_DIR}/root)
set(QUILLET_INSTALL_ROOT ${CMAKE_INSTALL_LIBDIR}/quillet)

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${QUILLET_ROOT}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${QUILLET_ROOT}/lib)
# What is built is installed as it is.
set(CMAKE_INSTALL_RPATH "$ORIGIN/../lib;$ORIGIN")
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)

# quillet_install_program(TARGET) and quillet_install_library(TARGET [FOLDER]): what stands in bin and in lib, or a folder of
# lib.
function(quillet_install_program target)
    install(TARGETS ${target} RUNTIME DESTINATION ${QUILLET_INSTALL_ROOT}/bin)
endfunction()

function(quillet_install_library target)
    install(TARGETS ${target} LIBRARY DESTINATION ${QUILLET_INSTALL_ROOT}/lib/${ARGN} NAMELINK_SKIP)
endfunction()

# quillet_install_made(files...): files that the build makes within the tree.
function(quillet_install_made)
    foreach(file ${ARGN})
        file(RELATIVE_PATH path ${QUILLET_ROOT} ${file})
        get_filename_component(folder ${path} DIRECTORY)
        if(folder MATCHES "^share/")
            string(REGEX REPLACE "^share" "${CMAKE_INSTALL_DATADIR}" folder ${folder})
            install(FILES ${file} DESTINATION ${folder})
        else()
            install(FILES ${file} DESTINATION ${QUILLET_INSTALL_ROOT}/${folder})
        endif()
    endforeach()
endfunction()

# quillet_place(FILE PATH): copies a file of this folder to PATH within the tree.
function(quillet_place file path)
    configure_file(${CMAKE_CURRENT_SOURCE_DIR}/${file} ${QUILLET_ROOT}/${path} COPYONLY)
    quillet_install_made(${QUILLET_ROOT}/${path})
endfunction()

# quillet_stage(files...): copies files of this folder into the tree, under the same path as in the sources.
function(quillet_stage)
    file(RELATIVE_PATH folder ${CMAKE_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    foreach(item ${ARGN})
        quillet_place(${item} ${folder}/${item})
    endforeach()
endfunction()

# quillet_install_link(LINK TARGET): a link of an installation, both as full paths. It is relative, so that the installation
# may be moved.
function(quillet_install_link link target)
    get_filename_component(folder ${link} DIRECTORY)
    get_filename_component(name ${link} NAME)
    file(RELATIVE_PATH to ${folder} ${target})
    set(made ${CMAKE_CURRENT_BINARY_DIR}/links/${name})
    file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/links)
    file(CREATE_LINK ${to} ${made} SYMBOLIC)
    file(RELATIVE_PATH folder ${CMAKE_INSTALL_PREFIX} ${folder})
    install(FILES ${made} DESTINATION ${folder})
endfunction()
