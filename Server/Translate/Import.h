#pragma once

#include "Server/DataModel/Exchange/Format.h"
#include "Server/Translate/Reading.h"
#include "Server/Translate/Reporter.h"

#include <string>

namespace Vs::Translate {

/// Reads a foreign file, meshes it and writes the model file. Throws Unreadable.
void importFile(Exchange::Format format, const std::string& path, const std::string& modelPath,
                const ReadingOptions& options, Reporter& reporter);

} // namespace Vs::Translate
