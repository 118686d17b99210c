#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// Tries one input. What is wrong ends the process.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

inline void require(bool holds, const char* fault)
{
    if (holds)
        return;
    std::fprintf(stderr, "%s\n", fault);
    std::abort();
}
