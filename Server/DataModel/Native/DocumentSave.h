#pragma once

#include "Server/Base/Status.h"

#include <string>
#include <vector>

namespace Vs {

class Document;

/// Writes documents as native files. Main thread.
class DocumentSave
{
public:
    /// Writes the document to `path`: whole, or nothing of it. On success it is clean and belongs to that
    /// file; on failure it is as it was, and the status holds one error.
    static bool save(Document& document, const std::wstring& path, Status& status);

private:
    static std::vector<const Document*> othersOf(const Document& document, const std::wstring& path);
};

} // namespace Vs
