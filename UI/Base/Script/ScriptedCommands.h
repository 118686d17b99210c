#pragma once

#include "Server/Base/ScriptModel.h"

namespace Vu::ScriptedCommands {

/// Registers a command defined by a script: its definition, "Script.NAME", and its line, "Scripts.NAME". Both
/// stay until the program ends. If the name is registered already, the new function replaces the old one.
/// Throws Vs::Exception if someone else has a command with that identifier.
void define(Vs::ScriptModel::Command command);

} // namespace Vu::ScriptedCommands
