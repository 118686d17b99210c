#pragma once

#include "UI/Base/Command/CommandDefinition.h"

namespace Vu::Design {

/// What the commands share that show and hide components: they take what the text argument "Objects" names,
/// one path a line, or without it what is selected. Each makes one step of undo.
class VisibilityCmdDef : public Vs::Implements<VisibilityCmdDef, CommandDefinition>
{
public:
    enum class Kind { Hide, Show, ShowAll, Toggle };

    static const Vs::UniqueString* objectsArgumentName();

protected:
    VisibilityCmdDef(Info* info, Kind kind);
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
    bool onAddToContextMenu() override;

private:
    Kind m_kind;
};

/// "HideCommand".
class HideCmdDef : public Vs::Implements<HideCmdDef, VisibilityCmdDef>
{
public:
    HideCmdDef();
    static Info* info();
};

/// "ShowCommand".
class ShowCmdDef : public Vs::Implements<ShowCmdDef, VisibilityCmdDef>
{
public:
    ShowCmdDef();
    static Info* info();
};

/// "ShowAllCommand": whatever is hidden in the model.
class ShowAllCmdDef : public Vs::Implements<ShowAllCmdDef, VisibilityCmdDef>
{
public:
    ShowAllCmdDef();
    static Info* info();
};

/// "ToggleVisibilityCommand": hides, or if all of it is hidden shows.
class ToggleVisibilityCmdDef : public Vs::Implements<ToggleVisibilityCmdDef, VisibilityCmdDef>
{
public:
    ToggleVisibilityCmdDef();
    static Info* info();
};

} // namespace Vu::Design
