#pragma once

#include "Server/Base/LocalizedText.h"

namespace Vs::Types {

// This library's texts.
inline constexpr LocalizedText localized{L"VsTypes"};
inline constexpr LocalizedFormat localizedFormat{L"VsTypes"};

} // namespace Vs::Types
