# What every target of Quillet has in common, and the few helpers that the folders' lists call.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET default)
set(CMAKE_CXX_SCAN_FOR_MODULES OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# Assertions stay on in release builds: a broken promise stops where it is broken.
set(CMAKE_CXX_FLAGS_RELEASE "-O2")
set(CMAKE_CXX_FLAGS_DEBUG "-O0 -g1")

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

# The tree of a running Quillet is laid out as it will be installed; the program finds everything from there.
set(QUILLET_ROOT ${CMAKE_BINARY_DIR}/root)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${QUILLET_ROOT}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${QUILLET_ROOT}/lib)
set(CMAKE_BUILD_RPATH "$ORIGIN/../lib;$ORIGIN")
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

set(QUILLET_SANITIZE "" CACHE STRING "Sanitizers to build with, as given to -fsanitize")

find_program(QUILLET_CCACHE ccache)
if(QUILLET_CCACHE)
    # Precompiled headers and __TIME__-free sources make these two relaxations safe; the base directory lets
    # clones in different places share one cache.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
        CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${QUILLET_CCACHE})
endif()

find_program(QUILLET_MOLD mold)
if(QUILLET_MOLD)
    add_link_options(-fuse-ld=mold)
endif()
add_link_options(-Wl,--as-needed)
# A library's calls of its own functions need no look-up by name, which is most of what a start consists of.
add_link_options(-Wl,-Bsymbolic-functions)

option(QUILLET_WERROR "A warning is an error; the presets set it" OFF)
add_compile_options(-Wall -Wextra -Wno-missing-field-initializers -Wconversion -Wsign-conversion -Wold-style-cast
    -Wnon-virtual-dtor -Woverloaded-virtual -Wduplicated-cond -Wduplicated-branches -Wlogical-op -fno-plt)
# Not -Wnull-dereference: this compiler finds it in its own streams and shared pointers.
# The standard library checks its own preconditions, too.
add_compile_definitions(_GLIBCXX_ASSERTIONS)
if(QUILLET_WERROR)
    add_compile_options(-Werror)
endif()
if(QUILLET_CCACHE)
    add_compile_options(-fpch-preprocess)
endif()
if(QUILLET_SANITIZE)
    add_compile_options(-fsanitize=${QUILLET_SANITIZE} -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${QUILLET_SANITIZE})
endif()

find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)
find_package(Boost 1.74 REQUIRED COMPONENTS filesystem locale thread)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Widgets OpenGL OpenGLWidgets Svg)
set(QT_NO_PRIVATE_MODULE_WARNING ON)
# No version is asked for here: the kernel accepts only its own exact version number as a match.
find_package(OpenCASCADE REQUIRED)
pkg_check_modules(LIBXML2 REQUIRED IMPORTED_TARGET libxml-2.0)
pkg_check_modules(LIBZIP REQUIRED IMPORTED_TARGET libzip)
pkg_check_modules(ZLIB REQUIRED IMPORTED_TARGET zlib)
pkg_check_modules(EPOXY REQUIRED IMPORTED_TARGET epoxy)
# Debian's own interpreter, whatever else is first on the PATH.
set(Python3_EXECUTABLE /usr/bin/python3)
find_package(Python3 3.11 REQUIRED COMPONENTS Interpreter Development.Embed)
find_package(Gettext REQUIRED)

# quillet_library(NAME SHARED|MODULE SOURCES... [PUBLIC libs...] [PRIVATE libs...] [PCH headers...] [MOC])
function(quillet_library name kind)
    cmake_parse_arguments(ARG "MOC" "" "SOURCES;PUBLIC;PRIVATE;PCH" ${ARGN})
    add_library(${name} ${kind} ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE})
    if(ARG_MOC)
        set_target_properties(${name} PROPERTIES AUTOMOC ON)
    endif()
    if(ARG_PCH)
        target_precompile_headers(${name} PRIVATE ${ARG_PCH})
    endif()
endfunction()

# quillet_sources(TARGET files...): adds this folder's files to a library whose list stands in a folder above.
function(quillet_sources target)
    list(TRANSFORM ARGN PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
    target_sources(${target} PRIVATE ${ARGN})
endfunction()

# quillet_stage(files...): copies files of this folder into the running tree, under the same relative path.
function(quillet_stage)
    file(RELATIVE_PATH folder ${CMAKE_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    foreach(item ${ARGN})
        configure_file(${CMAKE_CURRENT_SOURCE_DIR}/${item} ${QUILLET_ROOT}/${folder}/${item} COPYONLY)
    endforeach()
endfunction()
