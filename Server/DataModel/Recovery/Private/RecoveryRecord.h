#pragma once

#include "Server/DataModel/Recovery/Private/SourceState.h"

#include <string>
#include <string_view>
#include <vector>

namespace Vs::Recovery {

/// What a recovery file says about itself, apart from the document.
struct RecoveryRecord
{
    std::wstring fileName;            ///< The document's display name.
    std::wstring source;              ///< Its native file; empty if it was never saved.
    SourceState sourceState;          ///< As it was when the document was opened from it, or saved to it.
    std::vector<std::string> digests; ///< Of the document's models (digestsOf); empty if they aren't known.
    std::wstring savedTime;           ///< As `timeNow` returns it.
    unsigned steps = 0;               ///< The first journal of what was done since (StepJournal); 0 for none.
    std::string documentType;         ///< DocumentType::identifier.
    std::wstring attachmentUrl;

    /// Throws std::runtime_error with the cause.
    static RecoveryRecord read(std::string_view json);
    std::string write() const;

    /// "yyyyMMddThhmmss" in local time.
    static std::wstring timeNow();
};

/// Whether a table of contents comes from a newer version's package, which isn't damaged just because it
/// isn't understood.
[[nodiscard]] bool isNewer(std::string_view manifest);

} // namespace Vs::Recovery
