# How the files that people see come into the running tree: drawn, or copied, into the folder of their language.

set(QUILLET_LOCALIZATION ${QUILLET_ROOT}/Localization)

# quillet_localized(files...): copies English resources of this folder to Localization/en/<this folder>.
function(quillet_localized)
    file(RELATIVE_PATH folder ${CMAKE_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    foreach(item ${ARGN})
        quillet_place(${item} Localization/en/${folder}/${item})
    endforeach()
endfunction()

# quillet_draw(TARGET JOBS DRAWINGS): draws what the lines of JOBS say, as part of the default build; a line is
# "<size><tab><SVG file><tab><PNG file>". DRAWINGS are the SVG files, for the dates.
function(quillet_draw target jobs drawings)
    list(REMOVE_DUPLICATES drawings)
    string(REGEX MATCHALL "[^\t\n]+\n" pictures "${jobs}")
    list(TRANSFORM pictures STRIP)
    quillet_install_made(${pictures})
    set(job_file ${CMAKE_CURRENT_BINARY_DIR}/${target}.jobs)
    file(CONFIGURE OUTPUT ${job_file} CONTENT "${jobs}" @ONLY)
    set(stamp ${CMAKE_CURRENT_BINARY_DIR}/${target}.stamp)
    add_custom_command(
        OUTPUT ${stamp}
        # Libraries of the window system keep memory to the end of a process; that is not this build's business.
        COMMAND ${CMAKE_COMMAND} -E env ASAN_OPTIONS=detect_leaks=0 TSAN_OPTIONS=report_bugs=0 $<TARGET_FILE:quillet-icons> ${job_file}
        COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
        DEPENDS quillet-icons ${job_file} ${drawings}
        COMMENT "Drawing the pictures of ${target}"
        VERBATIM)
    add_custom_target(${target} ALL DEPENDS ${stamp})
    add_dependencies(quillet-app ${target})
endfunction()

# quillet_pictures(TARGET LIST): makes the PNG files that LIST names, from the SVG files that stand beside LIST, with
# the program quillet-icons, as part of the default build. The head of the list tells its form.
function(quillet_pictures target list)
    get_filename_component(list ${list} ABSOLUTE)
    get_filename_component(sources ${list} DIRECTORY)
    file(RELATIVE_PATH folder ${CMAKE_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    set(output ${QUILLET_LOCALIZATION}/en/${folder})
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${list})

    set(jobs "")
    set(drawings "")
    file(STRINGS ${list} rows REGEX "^[a-z]")
    foreach(row ${rows})
        separate_arguments(row)
        list(POP_FRONT row kind path)
        if(kind STREQUAL "set")
            foreach(size 16 24 32 64)
                set(drawing ${sources}/${path}.svg)
                if(size EQUAL 32 AND row STREQUAL "pointer")
                    set(drawing ${sources}/${path}.pointer.svg)
                endif()
                list(APPEND drawings ${drawing})
                string(APPEND jobs "${size}\t${drawing}\t${output}/${path}/${size}x${size}.png\n")
            endforeach()
        elseif(kind STREQUAL "pointer")
            list(APPEND drawings ${sources}/${path}.svg)
            string(APPEND jobs "32\t${sources}/${path}.svg\t${output}/${path}/32x32.png\n")
        elseif(kind STREQUAL "image")
            list(POP_FRONT row size)
            set(drawing ${path})
            if(row)
                set(drawing ${row})
            endif()
            list(APPEND drawings ${sources}/${drawing}.svg)
            string(APPEND jobs "${size}\t${sources}/${drawing}.svg\t${output}/${path}.png\n")
        else()
            message(FATAL_ERROR "${list}: unknown kind of picture: ${kind}")
        endif()
    endforeach()
    quillet_draw(${target} "${jobs}" "${drawings}")
endfunction()
