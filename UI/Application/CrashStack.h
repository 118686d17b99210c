#pragma once

namespace Quillet {

/// Has a crash of this process write the calls that led to it to standard error, before it ends as it would
/// have. What a sanitizer builds has a report of its own.
void tellStackOfCrash();

/// What stands before these calls, in a line of its own.
constexpr const char* kStackHead = "quillet: The calls that led to the crash, the innermost first:";

} // namespace Quillet
