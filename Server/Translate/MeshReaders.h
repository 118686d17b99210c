#pragma once

#include "Server/Translate/Reading.h"

namespace Vs::Translate {

/// Reads the shapes with their names, colours and structure, in millimetres. Throws Unreadable.
Reading readObj(const std::string& path, Reporter& reporter);
Reading readGltf(const std::string& path, bool binary, Reporter& reporter);

} // namespace Vs::Translate
