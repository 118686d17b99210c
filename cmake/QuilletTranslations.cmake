# How translated texts come into the running tree: compiled, into the folder of their language.

# quillet_translations(DOMAIN po-files... [DESTINATION folder]): compiles each <language>/DOMAIN.po to
# <destination>/<language>/LC_MESSAGES/DOMAIN.mo, as part of the default build. The destination is
# Localization in the running tree unless another is given. A file with mistakes stops the build.
function(quillet_translations domain)
    cmake_parse_arguments(ARG "" "DESTINATION" "" ${ARGN})
    set(destination ${QUILLET_ROOT}/Localization)
    if(ARG_DESTINATION)
        set(destination ${ARG_DESTINATION})
    endif()
    set(compiled "")
    foreach(item ${ARG_UNPARSED_ARGUMENTS})
        get_filename_component(source ${item} ABSOLUTE)
        get_filename_component(folder ${source} DIRECTORY)
        get_filename_component(language ${folder} NAME)
        set(output ${destination}/${language}/LC_MESSAGES/${domain}.mo)
        get_filename_component(output_folder ${output} DIRECTORY)
        add_custom_command(
            OUTPUT ${output}
            COMMAND ${CMAKE_COMMAND} -E make_directory ${output_folder}
            COMMAND ${GETTEXT_MSGFMT_EXECUTABLE} --check-format --check-domain -o ${output} ${source}
            DEPENDS ${source}
            COMMENT "Compiling the texts of ${domain} in ${language}"
            VERBATIM)
        list(APPEND compiled ${output})
    endforeach()
    add_custom_target(translations_${domain} ALL DEPENDS ${compiled})
    if(NOT ARG_DESTINATION)
        quillet_install_made(${compiled})
        add_dependencies(quillet-app translations_${domain})
    endif()
endfunction()
