#pragma once

#include <stdexcept>

namespace Itemhub::Store {

/// What the database refuses or cannot do. The text is for the log; clients learn the kind.
class StoreError : public std::runtime_error
{
public:
    enum class Kind {
        Busy,     ///< Locked by somebody else for too long; may succeed later.
        Full,     ///< No space left on disk.
        Gone,     ///< It cannot be reached, or is no longer the one that was opened.
        Newer,    ///< Created by a later version of the program.
        Conflict, ///< A row with that key exists, or a referenced one doesn't.
        Other,
    };

    StoreError(Kind kind, const std::string& what) : std::runtime_error(what), kind(kind) {}

    Kind kind;
};

} // namespace Itemhub::Store
