#pragma once

#include "Server/Base/Status.h"
#include "Server/DataModel/Native/NativeLoad.h"

#include <optional>
#include <string>

namespace Vs {

class Document;

/// Makes documents from native files.
class DocumentBuild
{
public:
    /// Reads a native file. Returns nothing, with one error that names the file and the cause, if it can't be
    /// read or the watch cancelled. Any thread.
    static std::optional<Native::NativeLoad> read(const std::wstring& path,
                                                  const Native::NativeLoad::Watch& watch, Status& status);

    /// Makes a document from what was read. Null, with the reason, if no add-in knows its type. Main thread.
    static Document* build(Native::NativeLoad load, const std::wstring& path, Status& status);
};

} // namespace Vs
