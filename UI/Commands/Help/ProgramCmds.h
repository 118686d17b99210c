#pragma once

#include "UI/Commands/Help/HelpMenu.h"

namespace Vu::Commands {

/// The programme in which users share usage data. It has been discontinued: the command does nothing.
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

/// Starts the tour of the window.
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

/// Opens or closes the command search field.
class SearchCommandsCmdDef : public CommandRowDefinition<SearchCommandsCmdDef, SearchCommandsCmd>
{
public:
    static const CommandRow kRow;

    /// Creates the only definition of this class at the first call. It isn't among the add-in's members.
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

/// Shows the home screen, restoring the window if it was minimized.
class WelcomeScreenCmdDef : public CommandRowDefinition<WelcomeScreenCmdDef, WelcomeScreenCmd>
{
public:
    static const CommandRow kRow;

    /// Creates the only definition of this class at the first call. It isn't among the add-in's members.
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
