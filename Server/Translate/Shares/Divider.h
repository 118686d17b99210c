#pragma once

#include "Server/Translate/Shares/ShareBoard.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Vs::Translate::Shares {

/// What the process that divides a file is given.
struct Division
{
    std::string path;
    std::string pieces;  ///< The folder in which pieces are kept; empty for none.
    uint64_t memory = 0; ///< For all readers together.
    size_t readers = 2;  ///< At once.
    bool isAlways = false;
    int pipe = -1; ///< To the worker.
    std::vector<int> files;
    ShareBoard* board = nullptr;
};

// It tells the worker over the pipe, in its protocol: Progress once when the file is divided, with the number
// of shares; Done with the number of each share whose file is complete; Error
// if the file is to be read as a whole.

/// What that process does; it ends in here.
[[noreturn]] void divide(const Division& division);

} // namespace Vs::Translate::Shares
