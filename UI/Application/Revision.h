#pragma once

namespace Quillet {

/// The commit that the program was built from, as twelve hexadecimal digits, with "-dirty" appended if its
/// sources were changed since; "unknown" if there was no repository. The build writes its source file.
extern const char* const kRevision;

} // namespace Quillet
