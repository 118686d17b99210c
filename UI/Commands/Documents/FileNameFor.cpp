#include "UI/Commands/Documents/FileNameFor.h"

#include "Server/DataModel/Document.h"

#include <algorithm>

namespace Vu::Commands {

std::wstring fileNameFor(const Vs::Document* document, const std::wstring& suffix)
{
    std::wstring name = document->displayName();
    // A document's name may be anything; a file's name must not be a path.
    std::replace(name.begin(), name.end(), L'/', L'_');
    return name + suffix;
}

} // namespace Vu::Commands
