#pragma once

#include "Server/Base/ScriptModel.h"

namespace Vu::ScriptedCommands {

/// Makes a command of a script's known: its definition, "Script.NAME", and its line, "Scripts.NAME". Both
/// stay until the program ends. Of a name that is known already the new one runs from now on. Throws
/// Vs::Exception if somebody else has a command of that identifier.
void define(Vs::ScriptModel::Command command);

} // namespace Vu::ScriptedCommands
