# Run by the build: cmake -DSOURCES=<checkout> -DOUTPUT=<file> -P FindRevision.cmake
# Writes a source file with the commit that the checkout stands at, with -dirty behind it if tracked files were changed since.
# The file is only touched when that differs, so that nothing else is built anew.

set(revision unknown)
find_program(GIT git)
if(GIT)
    # A tarball that was unpacked within somebody's repository isn't a commit of that.
    execute_process(COMMAND ${GIT} -C ${SOURCES} rev-parse --show-toplevel
        OUTPUT_VARIABLE top OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
    file(REAL_PATH "${SOURCES}" sources)
    if(top STREQUAL sources)
        execute_process(COMMAND ${GIT} -C ${SOURCES} describe --always --dirty --abbrev=12 "--exclude=*"
            OUTPUT_VARIABLE described OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
        if(described)
            set(revision ${described})
        endif()
    endif()
endif()
# What was packed without its repository says it in a file.
if(revision STREQUAL unknown AND EXISTS ${SOURCES}/.revision)
    file(STRINGS ${SOURCES}/.revision revision LIMIT_COUNT 1)
endif()
file(CONFIGURE OUTPUT ${OUTPUT} CONTENT [[
#include "UI/Application/Revision.h"

const char* const Quillet::kRevision = "@revision@";
]] @ONLY)
