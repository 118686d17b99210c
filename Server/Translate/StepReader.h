#pragma once

#include "Server/Translate/Reading.h"

namespace Vs::Translate {

/// Reads the shapes with their names, colours and structure, in millimetres. Throws Unreadable.
Reading readStep(const std::string& path, const ReadingOptions& options, Reporter& reporter);

} // namespace Vs::Translate
