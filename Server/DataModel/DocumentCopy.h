#pragma once

#include "Server/Base/Status.h"

#include <string>

namespace Vs {

class Document;

/// Writes a copy of the document, as it is now, to that path as a native file; like Document::saveAs, but the
/// document stays what and where it was, dirty or not, and nobody is asked or notified. It refuses the
/// document's own file, that of another open document and one that is write-protected. False with one error
/// that names the file and the cause. Main thread only.
bool saveCopy(Document& document, const std::wstring& path, Status& status);

} // namespace Vs
