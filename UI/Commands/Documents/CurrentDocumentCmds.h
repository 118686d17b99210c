#pragma once

#include "UI/Commands/Documents/OpenDocumentsCmds.h"

namespace Vu::Commands {

/// A button that shows the newest open document of one type.
class CurrentDocumentButtonCmdDef
    : public Vs::Implements<CurrentDocumentButtonCmdDef, CurrentlyOpenDocumentsCmdDef>
{
public:
    using Implements::Implements;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
    InputControl* onInputControl() override;
};

/// A list of the open documents of one type, visible while one of them is the current document.
class CurrentDocumentListCmdDef
    : public Vs::Implements<CurrentDocumentListCmdDef, CurrentlyOpenDocumentsCmdDef>
{
public:
    using Implements::Implements;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override;
};

class ItemhubCurrentDesignCmdDef
    : public RowDefinition<ItemhubCurrentDesignCmdDef, CurrentDocumentButtonCmdDef>
{
public:
    static const CommandRow kRow;
    ItemhubCurrentDesignCmdDef();
};

class ItemhubCurrentDesignListCmdDef
    : public RowDefinition<ItemhubCurrentDesignListCmdDef, CurrentDocumentListCmdDef>
{
public:
    static const CommandRow kRow;
    ItemhubCurrentDesignListCmdDef();
};

class ItemhubCurrentSimulationCmdDef
    : public RowDefinition<ItemhubCurrentSimulationCmdDef, CurrentDocumentButtonCmdDef>
{
public:
    static const CommandRow kRow;
    ItemhubCurrentSimulationCmdDef();
};

class ItemhubCurrentSimulationListCmdDef
    : public RowDefinition<ItemhubCurrentSimulationListCmdDef, CurrentDocumentListCmdDef>
{
public:
    static const CommandRow kRow;
    ItemhubCurrentSimulationListCmdDef();
};

class ItemhubCurrentDocumentationCmdDef
    : public RowDefinition<ItemhubCurrentDocumentationCmdDef, CurrentDocumentButtonCmdDef>
{
public:
    static const CommandRow kRow;
    ItemhubCurrentDocumentationCmdDef();
};

class ItemhubCurrentDocumentationListCmdDef
    : public RowDefinition<ItemhubCurrentDocumentationListCmdDef, CurrentDocumentListCmdDef>
{
public:
    static const CommandRow kRow;
    ItemhubCurrentDocumentationListCmdDef();
};

} // namespace Vu::Commands
