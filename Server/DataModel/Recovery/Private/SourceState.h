#pragma once

#include "Server/DataModel/Model/FileMapping.h"

#include <string>

namespace Vs::Recovery {

/// The file that a document was opened from or saved to, as it was then: by what the system knows of it and
/// by a digest of its end, where a native file has its manifest and the checksums of all that is in it.
struct SourceState
{
    FileIdentity identity;
    std::string digest; ///< Empty if the file couldn't be read.

    /// Of what stands there now; of identity zero if nothing does. Any thread.
    [[nodiscard]] static SourceState of(const std::string& path);
    /// Whether the content is the same, also where it was copied, moved or touched.
    [[nodiscard]] bool holdsTheSameAs(const SourceState& other) const;
};

} // namespace Vs::Recovery
