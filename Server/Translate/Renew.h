#pragma once

#include "Server/Translate/Reporter.h"

#include <string>

namespace Vs::Translate {

/// Reads the exact data of a model, which anybody may have made, and writes them again into a model file
/// without anything else. Whoever reads that file reads what this kernel wrote. Throws Unreadable.
void renewData(const std::string& path, const std::string& modelPath, Reporter& reporter);

} // namespace Vs::Translate
