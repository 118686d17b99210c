#pragma once

#include "Server/Translate/Shares/ShareBoard.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Vs::Translate::Shares {

/// The parameters of the process that divides a file.
struct Division
{
    std::string path;
    std::string pieces;  ///< The folder in which pieces are cached; empty for none.
    uint64_t memory = 0; ///< For all readers together.
    size_t readers = 2;  ///< At once.
    bool isAlways = false;
    int pipe = -1; ///< To the worker.
    std::vector<int> files;
    ShareBoard* board = nullptr;
};

// It reports to the worker over the pipe, in its protocol: Progress once when the file is divided, with the
// number of shares; Done with the number of each share whose file is complete; Error if the file must be read
// as a whole.

/// The body of that process, which ends in here.
[[noreturn]] void divide(const Division& division);

} // namespace Vs::Translate::Shares
