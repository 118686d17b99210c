#pragma once

namespace Quillet {

/// Makes a crash of this process write its call stack to standard error, before it ends as it would have
/// anyway. Sanitizer builds have reports of their own.
void tellStackOfCrash();

/// The heading of the call stack, on a line of its own.
constexpr const char* kStackHead = "quillet: The calls that led to the crash, the innermost first:";

} // namespace Quillet
