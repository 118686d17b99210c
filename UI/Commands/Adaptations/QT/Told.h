#pragma once

#include "UI/Commands/Localized.h"

#include <QString>

namespace Vu::Commands {

/// The user's text for a widget (localized).
inline QString told(const char* key, const char* english)
{
    return QString::fromStdWString(localized(key, english));
}

} // namespace Vu::Commands
