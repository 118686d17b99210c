#pragma once

namespace Quillet {

/// Prints every registered text command, one JSON object per line, in registration order.
void listCommands();

/// The same for every command definition.
void listDefinitions();

/// The same for every foreign format that can be read or written.
void listFormats();

/// Prints the options of the command line.
void listOptions();

} // namespace Quillet
