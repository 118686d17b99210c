#pragma once

#include "UI/Base/Window/QtIcon.h"

#include <string>

namespace Vu::Commands {

/// The icon of a kind of document, by the identifier of its document type; the general one if the kind is
/// unknown or has none.
QIcon iconOfDocumentType(const std::string& identifier);

/// Whether a file of that name is one of the program's own documents.
[[nodiscard]] bool isNative(const std::wstring& path);

/// The icon by the file's name.
QIcon iconOfFile(const std::wstring& path);

} // namespace Vu::Commands
