#pragma once

#include <string>
#include <vector>

namespace Vu {

/// Opens files that were dropped on the window, one command for each, in their order. The first takes the
/// place of the document that shows, as any opening does, if the user lets that go; the others come beside
/// it. Folders are left out, with a message; very many files are opened only if the user means it.
void openDroppedFiles(const std::vector<std::wstring>& paths);

} // namespace Vu
