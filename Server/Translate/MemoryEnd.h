#pragma once

#include <string_view>

namespace Vs::Translate {

// Where memory runs out, the kernel and the libraries below it throw, report something else, or crash. In
// each case the cause is the memory, and nothing is wrong with the file.

/// Whether hardly any is left of the address space that this process may use.
bool isMemoryShort();

/// Crashes of this process for want of memory end it with an exit code instead, after these bytes have been
/// written to the descriptor; other crashes stay as they are. The bytes must remain.
void endWhenMemoryIsShort(int code, int descriptor = -1, std::string_view bytes = {});

} // namespace Vs::Translate
