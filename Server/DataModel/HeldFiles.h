#pragma once

#include "Server/DataModel/FileUser.h"

#include <optional>

namespace Vs {

class Document;

/// Whose files somebody else works on, as DocumentLocks finds out. Main thread only.
class HeldFiles
{
public:
    /// Null if nobody has the document's file, or this run has.
    [[nodiscard]] static const FileUser* holder(const Document* document);
    /// Nobody for nothing.
    static void note(const Document* document, std::optional<FileUser> user);
};

} // namespace Vs
