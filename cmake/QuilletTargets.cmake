# The few helpers by which the folders' lists make targets.

# quillet_headers(NAME HEADERS... [LIBRARIES libs...]): precompiled headers that several targets share, by the name NAME.
# Headers of the standard library come first.
function(quillet_headers name)
    cmake_parse_arguments(ARG "" "" "LIBRARIES" ${ARGN})
    set(empty ${CMAKE_BINARY_DIR}/empty.cpp)
    file(CONFIGURE OUTPUT ${empty} CONTENT "// What carries precompiled headers needs a source file.\n")
    add_library(${name} OBJECT ${empty})
    target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES})
    target_precompile_headers(${name} PRIVATE
        <algorithm> <array> <atomic> <cmath> <cstdint> <functional> <map> <memory> <optional> <source_location> <stdexcept>
        <string> <string_view> <unordered_map> <utility> <vector> ${ARG_UNPARSED_ARGUMENTS})
endfunction()

# What almost every file includes.
quillet_headers(QuilletHeaders)

# quillet_library(NAME SHARED|MODULE SOURCES... [PUBLIC libs...] [PRIVATE libs...] [HEADERS target] [MOC]): a
# library of the running tree, with the precompiled headers of HEADERS (see quillet_headers).
function(quillet_library name kind)
    cmake_parse_arguments(ARG "MOC" "HEADERS" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    add_library(${name} ${kind} ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE})
    # Sanitizers compare the addresses of what this keeps apart.
    if(NOT QUILLET_SANITIZE)
        target_link_options(${name} PRIVATE -Wl,--version-script=${CMAKE_SOURCE_DIR}/cmake/own-names.map)
        set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${CMAKE_SOURCE_DIR}/cmake/own-names.map)
    endif()
    if(ARG_MOC)
        set_target_properties(${name} PROPERTIES AUTOMOC ON)
    endif()
    quillet_install_library(${name})
    if(ARG_HEADERS)
        target_precompile_headers(${name} REUSE_FROM ${ARG_HEADERS})
    endif()
endfunction()

# quillet_sources(TARGET files...): adds this folder's files to a library whose list stands in a folder above.
function(quillet_sources target)
    list(TRANSFORM ARGN PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
    target_sources(${target} PRIVATE ${ARGN})
endfunction()
