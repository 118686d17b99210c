# How every target of Quillet is compiled and linked.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# Programs are compiled as libraries are, so that they can share precompiled headers.
set(CMAKE_CXX_COMPILE_OPTIONS_PIE -fPIC)
set(CMAKE_CXX_VISIBILITY_PRESET default)
set(CMAKE_CXX_SCAN_FOR_MODULES OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# Assertions stay on in release builds: a broken promise stops where it is broken.
set(CMAKE_CXX_FLAGS_RELEASE "-O2")
set(CMAKE_CXX_FLAGS_DEBUG "-O0 -g1")

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

set(QUILLET_SANITIZE "" CACHE STRING "Sanitizers to build with, as given to -fsanitize")

find_program(QUILLET_CCACHE ccache)
if(QUILLET_CCACHE)
    # Precompiled headers and __TIME__-free sources make these two relaxations safe; the base directory lets
    # clones in different places share one cache. What a file includes is taken from the compiler's own list of it, which
    # saves reading it all twice.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
        CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 CCACHE_DEPEND=1 ${QUILLET_CCACHE})
endif()

find_program(QUILLET_MOLD mold)
if(QUILLET_MOLD)
    add_link_options(-fuse-ld=mold)
endif()
add_link_options(-Wl,--as-needed)
# What a library misses is an error when it is linked, and not when somebody calls it. Sanitizers leave their own to the program.
if(NOT QUILLET_SANITIZE)
    add_link_options(-Wl,-z,defs)
endif()
# A library's calls of its own functions need no look-up by name, which is most of what a start consists of.
add_link_options(-Wl,-Bsymbolic-functions)

# What a file is called in messages stands in what is built. The same in every checkout, it makes the same packages; builds in
# between do without, since compilers' caches tell the two apart.
option(QUILLET_SAME_PATHS "Nothing of what is built tells the checkout's folder; the preset package sets it" OFF)
if(QUILLET_SAME_PATHS)
    add_compile_options(-ffile-prefix-map=${CMAKE_BINARY_DIR}/=build/ -ffile-prefix-map=${CMAKE_SOURCE_DIR}/=)
endif()

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
    # Optimised a little: what is checked runs several times slower as it is. The first fault ends a program, so that no test
    # passes over it.
    add_compile_options(-fsanitize=${QUILLET_SANITIZE} -fno-sanitize-recover=undefined -fno-omit-frame-pointer -O1 -g1)
    add_link_options(-fsanitize=${QUILLET_SANITIZE})
endif()
