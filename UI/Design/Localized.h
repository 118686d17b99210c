#pragma once

#include "Server/Base/LocalizedText.h"

namespace Vu::Design {

/// The add-in's string-table and resource domain, and its texts.
inline constexpr const wchar_t* kDomain = L"VuDesign";
inline constexpr Vs::LocalizedText localized{kDomain};
inline constexpr Vs::LocalizedFormat localizedFormat{kDomain};

} // namespace Vu::Design
