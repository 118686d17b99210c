#pragma once

#include "Server/Base/LocalizedText.h"

namespace Vs::Cloud {

// This library's texts.
inline constexpr LocalizedText localized{L"VsSkyvault"};
inline constexpr LocalizedFormat localizedFormat{L"VsSkyvault"};

} // namespace Vs::Cloud
