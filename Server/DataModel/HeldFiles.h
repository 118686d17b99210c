#pragma once

#include "Server/DataModel/FileUser.h"

#include <optional>

namespace Vs {

class Document;

/// The files that somebody else works on, as found by DocumentLocks. Main thread only.
class HeldFiles
{
public:
    /// Null if nobody holds the document's file, or this run does.
    [[nodiscard]] static const FileUser* holder(const Document* document);
    /// Nobody for nothing.
    static void note(const Document* document, std::optional<FileUser> user);
};

} // namespace Vs
