#pragma once

#include "Server/Base/LocalizedText.h"

namespace Vs::DataModel {

// This library's texts.
inline constexpr LocalizedText localized{L"VsDataModel"};
inline constexpr LocalizedFormat localizedFormat{L"VsDataModel"};

} // namespace Vs::DataModel
