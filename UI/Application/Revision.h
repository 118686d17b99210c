#pragma once

namespace Quillet {

/// The commit that the program was built from, as twelve hexadecimal digits, with "-dirty" behind them if its
/// sources were changed since; "unknown" where there was no repository. The build writes the source file of
/// this.
extern const char* const kRevision;

} // namespace Quillet
