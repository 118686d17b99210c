#pragma once

#include "Server/DataModel/Model/FileMapping.h"

#include <string>

namespace Vs::Recovery {

/// The file that a document was opened from or saved to, as it was then: identified by what the system knows
/// about it and by a digest of its end, where a native file has its manifest and the checksums of everything
/// in it.
struct SourceState
{
    FileIdentity identity;
    std::string digest; ///< Empty if the file couldn't be read.

    /// Of what is there now; of identity zero if nothing is. Any thread.
    [[nodiscard]] static SourceState of(const std::string& path);
    /// Whether the content is the same, even if it was copied, moved or touched.
    [[nodiscard]] bool holdsTheSameAs(const SourceState& other) const;
};

} // namespace Vs::Recovery
