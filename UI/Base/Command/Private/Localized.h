#pragma once

#include "Server/Base/LocalizedText.h"

#include <QString>

namespace Vu {

// The window's own texts.
inline constexpr Vs::LocalizedText localized{L"VuBase"};
inline constexpr Vs::LocalizedFormat localizedFormat{L"VuBase"};

} // namespace Vu
