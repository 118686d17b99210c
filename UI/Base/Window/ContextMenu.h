#pragma once

#include "UI/Base/Workspace/MarkingMenuEvents.h"

#include <map>
#include <string>
#include <string_view>

class QMenu;

namespace Vu {

class CommandDefinition;

/// Runs the command with these arguments after the present event, which may belong to something that the
/// command removes. Does nothing if the command doesn't exist or can't run now.
void runFromContextMenu(std::wstring_view key, const std::map<const char*, std::wstring>& arguments = {});

/// An entry that runs the command.
void addContextCommand(QMenu& menu, const CommandDefinition& definition);

/// Entries for those commands that offer themselves in a menu opened there and can run now, Delete last;
/// except those already in the menu, by the names of its actions.
void addContextCommands(QMenu& menu, MarkingMenuEventSource::ESource source);

} // namespace Vu
