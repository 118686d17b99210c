#pragma once

#include "Server/Base/Status.h"
#include "Server/DataModel/Native/NativeLoad.h"

#include <optional>
#include <string>
#include <vector>

namespace Vs {

class Document;

/// How a document hangs together with its native file.
struct DocumentFile
{
    FileIdentity identity;       ///< As it was when it was read or written; zero if it is unknown.
    bool migrated = false;       ///< It is of an older layout than the one that is written.
    bool editingAllowed = false; ///< A change of a document that can't be written was agreed to.
    std::shared_ptr<const FileMapping> file; ///< Where its old picture is.
};

/// Turns documents into native files and back. Main thread, except where said.
class DocumentStore
{
public:
    /// Reads a native file. Nothing, with one error that names the file and the cause, if it can't be read or
    /// the watch gave up. Any thread.
    static std::optional<Native::NativeLoad> read(const std::wstring& path,
                                                  const Native::NativeLoad::Watch& watch, Status& status);

    /// Makes a document of what was read. Null, with the reason, if no add-in knows its kind.
    static Document* build(Native::NativeLoad load, const std::wstring& path, Status& status);

    /// Writes the document to `path`: whole, or nothing of it. On success it is clean and belongs to that
    /// file; on failure it is as it was, and the status holds one error.
    static bool save(Document& document, const std::wstring& path, Status& status);

private:
    static std::vector<const Document*> othersOf(const Document& document, const std::wstring& path);
};

} // namespace Vs
