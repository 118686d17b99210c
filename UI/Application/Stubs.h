#pragma once

#include <string>

namespace Quillet {

/// Writes a type stub `AREA.pyi` for each area of text commands into the folder, which is created if missing:
/// editors and type checkers need them for the modules that scripts import. Throws Vs::Exception if one can't
/// be written.
void writeStubs(const std::string& folder);

} // namespace Quillet
