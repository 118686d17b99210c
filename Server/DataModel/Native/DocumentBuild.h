#pragma once

#include "Server/Base/Status.h"
#include "Server/DataModel/Native/NativeLoad.h"

#include <optional>
#include <string>

namespace Vs {

class Document;

/// Makes documents of native files.
class DocumentBuild
{
public:
    /// Reads a native file. Nothing, with one error that names the file and the cause, if it can't be read or
    /// the watch gave up. Any thread.
    static std::optional<Native::NativeLoad> read(const std::wstring& path,
                                                  const Native::NativeLoad::Watch& watch, Status& status);

    /// Makes a document of what was read. Null, with the reason, if no add-in knows its kind. Main thread.
    static Document* build(Native::NativeLoad load, const std::wstring& path, Status& status);
};

} // namespace Vs
