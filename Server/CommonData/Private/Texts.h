#pragma once

#include "Server/Base/LocalizedText.h"

namespace Vs::CommonData {

// This library's texts.
inline constexpr LocalizedText localized{L"VsCommonData"};
inline constexpr LocalizedFormat localizedFormat{L"VsCommonData"};

} // namespace Vs::CommonData
