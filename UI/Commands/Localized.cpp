#include "UI/Commands/Localized.h"

#include "Server/Base/StringTable.h"

namespace Vu::Commands {

std::wstring localized(const char* key, const char* english)
{
    return Vs::StringTable::getLocalizedString(kDomain, key, english);
}

} // namespace Vu::Commands
