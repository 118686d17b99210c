#pragma once

namespace Quillet {

/// Prints every text command that is registered, one JSON object a line, in the order of registration.
void listCommands();

/// The same for every command definition.
void listDefinitions();

/// The same for every foreign format that is read or written.
void listFormats();

/// Prints what can be written on the command line.
void listOptions();

} // namespace Quillet
