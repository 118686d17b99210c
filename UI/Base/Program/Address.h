#pragma once

#include <string>

namespace Vs {
class Status;
}

namespace Vu {

/// Where an address comes from: an edition of the program, which may name its own files, or anybody, such as
/// a transcript.
enum class AddressOf { Edition, Anybody };

/// Hands an address to the program that the desktop has for it: http, https or mailto, and for an edition
/// also the path of a file. Anything else is an error. If nothing on this desktop takes it, the user is told
/// so afterwards. A run that shows nothing, or is a test, tells the address instead. Main thread only.
void openAddress(const std::wstring& address, AddressOf source, Vs::Status& status);

} // namespace Vu
