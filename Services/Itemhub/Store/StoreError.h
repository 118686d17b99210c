#pragma once

#include <stdexcept>

namespace Itemhub::Store {

/// What the database refuses or cannot do. The text is for the log; clients are told the kind.
class StoreError : public std::runtime_error
{
public:
    enum class Kind {
        Busy,     ///< Somebody else has it for too long; later it may go.
        Full,     ///< No room on the disk.
        Gone,     ///< It cannot be reached, or is no longer the one that was opened.
        Newer,    ///< A later version of the program made it.
        Conflict, ///< A row of that key exists, or one that is referred to doesn't.
        Other,
    };

    StoreError(Kind kind, const std::string& what) : std::runtime_error(what), kind(kind) {}

    Kind kind;
};

} // namespace Itemhub::Store
