#pragma once

#include "UI/Base/Workspace/MarkingMenuEvents.h"

#include <map>
#include <string>
#include <string_view>

class QMenu;

namespace Vu {

class CommandDefinition;

/// Runs the command with these arguments behind the present event, which may belong to something that the
/// command takes away. Nothing happens if it isn't there or can't run now.
void runFromContextMenu(std::wstring_view key, const std::map<const char*, std::wstring>& arguments = {});

/// An entry that runs the command.
void addContextCommand(QMenu& menu, const CommandDefinition& definition);

/// Entries for those commands that offer themselves in a menu opened from there and can run now, Delete last;
/// but for those that the menu has already, by the names of its actions.
void addContextCommands(QMenu& menu, MarkingMenuEventSource::ESource source);

} // namespace Vu
