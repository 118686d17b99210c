#pragma once

#include "Server/Translate/Reading.h"

namespace Vs::Translate {

/// Reads the shapes with their names, colours and structure, in millimetres. Throws Unreadable.
Reading readIges(const std::string& path, Reporter& reporter);

} // namespace Vs::Translate
