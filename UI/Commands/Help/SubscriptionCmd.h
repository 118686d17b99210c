#pragma once

#include "UI/Commands/Help/HelpMenu.h"

#include <string>
#include <vector>

namespace Vu::Commands {

class SubscriptionCmd;

/// Looks whether there is a newer version, and tells so in the notification centre.
class SubscriptionCmdDef : public CommandRowDefinition<SubscriptionCmdDef, SubscriptionCmd>
{
public:
    static const CommandRow kRow;

    /// Of the notifications that are sent.
    static const std::wstring& notificationClientID();

    /// The updates that the user is to hear of, by name. Main thread only, as the others.
    void addUpdate(const std::wstring& name);
    /// Tells the user of all that are known then.
    void addUpdates(const std::vector<std::wstring>& names);
    /// Forgets one entry of that name.
    void clearUpdate(const std::wstring& name);
    void clearAllUpdates();
    /// Sends nothing where no update is known.
    void notifyUpdatesAvailable();

protected:
    bool onIsVisible(CommandContext* context) const override;

private:
    std::vector<std::wstring> m_updates;
};

/// Looks on a thread of its own, for a while at most: the file may lie on a disk that doesn't answer.
class SubscriptionCmd : public Vs::Implements<SubscriptionCmd, HelpMenuCmd>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
