#pragma once

#include "UI/Commands/Help/HelpMenu.h"

#include <string>
#include <vector>

namespace Vu::Commands {

class SubscriptionCmd;

/// Checks whether there is a newer version, and reports it in the notification centre.
class SubscriptionCmdDef : public CommandRowDefinition<SubscriptionCmdDef, SubscriptionCmd>
{
public:
    static const CommandRow kRow;

    /// Of the notifications it sends.
    static const std::wstring& notificationClientID();

    /// The updates to tell the user about, by name. Main thread only, like the others.
    void addUpdate(const std::wstring& name);
    /// Tells the user about all updates known then.
    void addUpdates(const std::vector<std::wstring>& names);
    /// Removes one entry of that name.
    void clearUpdate(const std::wstring& name);
    void clearAllUpdates();
    /// Sends nothing if no update is known.
    void notifyUpdatesAvailable();

protected:
    bool onIsVisible(CommandContext* context) const override;

private:
    std::vector<std::wstring> m_updates;
};

/// Checks on a separate thread and gives up after a while: the file may be on a disk that doesn't respond.
class SubscriptionCmd : public Vs::Implements<SubscriptionCmd, HelpMenuCmd>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
