#pragma once

#include "Server/Base/LocalizedText.h"

namespace Vs::Scene {

// Texts that users read.
inline constexpr LocalizedText localized{L"VsScene"};
inline constexpr LocalizedFormat localizedFormat{L"VsScene"};

} // namespace Vs::Scene
