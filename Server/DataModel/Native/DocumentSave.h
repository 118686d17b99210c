#pragma once

#include "Server/Base/Status.h"
#include "Server/DataModel/Model/FileMapping.h"

#include <string>
#include <vector>

namespace Vs {

class Document;
struct DocumentFile;

/// Writes documents as native files. Main thread.
class DocumentSave
{
public:
    /// Writes the document to `path`: completely or not at all. On success it is clean and belongs to that
    /// file; on failure it is unchanged, and the status holds one error.
    static bool save(Document& document, const std::wstring& path, Status& status);

    /// The same to a file that isn't the document's, without asking; the document is unchanged.
    static bool saveCopy(Document& document, const std::wstring& path, Status& status);

    /// Whether another program has changed the content of the document's file since it was opened or saved.
    [[nodiscard]] static bool isChangedOutside(const Document& document);

    /// How the document relates to its file, for code that writes it elsewhere without touching it.
    static const DocumentFile& fileOf(const Document& document);
    /// Records what a document opened from a recovery file was being worked on in: if it is given that path,
    /// a file changed since isn't overwritten without asking.
    static void recoveredOf(Document& document, const std::wstring& path, const FileIdentity& identity);

private:
    /// The document's name and path.
    struct Place
    {
        std::wstring path;
        std::wstring name;
        FileIdentity identity;
    };
    /// To the path that a handler gave the document meanwhile; if that fails, the document gets its old path
    /// back.
    static bool saveElsewhere(Document& document, const Place& before, Status& status);
    static std::vector<const Document*> othersOf(const Document& document, const std::wstring& path);
};

} // namespace Vs
