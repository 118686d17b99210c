#pragma once

#include <string>

namespace Quillet {

/// Writes a type stub `AREA.pyi` for each area of text commands into the folder, which is made if it isn't
/// there: what editors and type checkers need to know the modules that scripts import. Throws Vs::Exception
/// if one can't be written.
void writeStubs(const std::string& folder);

} // namespace Quillet
