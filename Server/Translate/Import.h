#pragma once

#include "Server/Translate/Readers.h"

namespace Vs::Translate {

/// Reads a foreign file, meshes it and writes the model file. Throws Unreadable.
void importFile(Exchange::Format format, const std::string& path, const std::string& modelPath,
                bool annotations, Reporter& reporter);

} // namespace Vs::Translate
