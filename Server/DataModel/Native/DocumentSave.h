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
    /// Writes the document to `path`: whole, or nothing of it. On success it is clean and belongs to that
    /// file; on failure it is as it was, and the status holds one error.
    static bool save(Document& document, const std::wstring& path, Status& status);

    /// The same to a file that isn't the document's, and without a question; the document stays as it is.
    static bool saveCopy(Document& document, const std::wstring& path, Status& status);

    /// Whether another program has changed what is in the document's file since it was opened or saved.
    [[nodiscard]] static bool isChangedOutside(const Document& document);

    /// How the document hangs together with its file, for those who write it elsewhere without touching it.
    static const DocumentFile& fileOf(const Document& document);
    /// Says of a document that was opened from a recovery file what it was being worked on in: if it is given
    /// that path, a file that was changed since isn't overwritten unasked.
    static void recoveredOf(Document& document, const std::wstring& path, const FileIdentity& identity);

private:
    /// What a document is called and where it is.
    struct Place
    {
        std::wstring path;
        std::wstring name;
        FileIdentity identity;
    };
    /// To the path that a handler gave the document meanwhile; if that fails, the document is where it was.
    static bool saveElsewhere(Document& document, const Place& before, Status& status);
    static std::vector<const Document*> othersOf(const Document& document, const std::wstring& path);
};

} // namespace Vs
