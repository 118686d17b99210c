#pragma once

#include "UI/Commands/Help/HelpMenu.h"

namespace Vu::Commands {

/// The programme in which users let their usage be counted. Nobody runs it now: the command does nothing.
class CIPCmdDef : public RowDefinition<CIPCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class CIPCmd : public Vs::Implements<CIPCmd, HelpMenuCmd>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status&) override {}
};

class PreferencesCmd;

/// Shows the user's settings.
class PreferencesCmdDef : public CommandRowDefinition<PreferencesCmdDef, PreferencesCmd>
{
public:
    static const CommandRow kRow;
};

class PreferencesCmd : public Vs::Implements<PreferencesCmd, HelpMenuCmd>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

class ProductTourGuideCmd;

/// Leads through the parts of the window.
class ProductTourGuideCmdDef : public CommandRowDefinition<ProductTourGuideCmdDef, ProductTourGuideCmd>
{
public:
    static const CommandRow kRow;
};

class ProductTourGuideCmd : public Vs::Implements<ProductTourGuideCmd, HelpMenuCmd>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

class SearchCommandsCmd;

/// Opens the field in which commands are searched, or closes it.
class SearchCommandsCmdDef : public CommandRowDefinition<SearchCommandsCmdDef, SearchCommandsCmd>
{
public:
    static const CommandRow kRow;

    /// Makes the one definition of this class at the first call. It isn't among the add-in's members.
    static void createCommandDef();
};

class SearchCommandsCmd : public Vs::Implements<SearchCommandsCmd, HelpMenuCmd>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

class WelcomeScreenCmd;

/// Shows the home screen, in a window that is brought back if it was minimized.
class WelcomeScreenCmdDef : public CommandRowDefinition<WelcomeScreenCmdDef, WelcomeScreenCmd>
{
public:
    static const CommandRow kRow;

    /// Makes the one definition of this class at the first call. It isn't among the add-in's members.
    static void createCommandDef();
};

class WelcomeScreenCmd : public Vs::Implements<WelcomeScreenCmd, HelpMenuCmd>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
