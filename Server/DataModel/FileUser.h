#pragma once

#include <ctime>
#include <string>

namespace Vs {

/// Who works on a file.
struct FileUser
{
    std::wstring name;
    std::wstring machine;
    std::time_t since = 0;    ///< 0 if it isn't known.
    bool isElsewhere = false; ///< On another machine: whether it still runs isn't known.
};

} // namespace Vs
