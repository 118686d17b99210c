#pragma once

#include <string>

namespace Vs {
class Asset;
class SelectionMgr;
class Tasks;
} // namespace Vs

namespace Vu {

class AssetSession;
class CommandBase;
class CommandContext;
class CommandDefinition;
class CommandDialog;
class CommandMgr;
class CursorController;
class GraphicsView;
class Shell;
class Workspace;

/// What the command model needs to know of the application it runs in. The application installs its own;
/// until then, and in a program without windows, this one answers that there is nothing. Main thread only.
class CommandHost
{
public:
    virtual ~CommandHost() = default;

    /// Never null.
    static CommandHost* get();
    /// Installs a host, which is not owned, and returns the previous one. Null restores the empty one.
    static CommandHost* install(CommandHost* host);

    virtual AssetSession* activeAssetSession() { return nullptr; }
    virtual Shell* activeShell() { return nullptr; }
    virtual Workspace* activeWorkspace() { return nullptr; }

    /// What belongs to a session, which is never null here.
    virtual CommandMgr* commandManager(AssetSession*) { return nullptr; }
    virtual Vs::Asset* asset(const AssetSession*) { return nullptr; }
    virtual Vs::SelectionMgr* selectionManager(AssetSession*) { return nullptr; }
    virtual GraphicsView* graphicsView(AssetSession*) { return nullptr; }

    /// Switches the session, which may be null, to the environment that a command asks for before it runs.
    virtual void activateEnvironment(AssetSession*, const std::wstring& /*environment*/) {}

    /// What belongs to a running command.
    virtual CursorController* cursorController(CommandBase*) { return nullptr; }
    virtual CommandDialog* commandDialog(CommandBase*) { return nullptr; }
    /// A command that asked for either of the two is being destroyed.
    virtual void commandGone(const CommandBase*) {}

    /// Whether it takes over a command that a person starts, because the user has to be asked something
    /// first.
    [[nodiscard]] virtual bool takesOver(CommandDefinition*, const CommandContext&) { return false; }

    /// The queue that runs at the end of the current event; null if there is no event loop.
    virtual Vs::Tasks* deferredTasks() { return nullptr; }
};

} // namespace Vu
