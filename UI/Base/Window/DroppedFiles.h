#pragma once

#include <string>
#include <vector>

namespace Vu {

/// Opens files dropped on the window, with one command each, in their order. The first replaces the document
/// shown, as when opening any file, if the user agrees to close that; the others open beside it. Folders are
/// skipped with a message; very many files are opened only after a confirmation.
void openDroppedFiles(const std::vector<std::wstring>& paths);

} // namespace Vu
