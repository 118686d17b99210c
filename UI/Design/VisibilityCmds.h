#pragma once

#include "UI/Base/Command/CommandDefinition.h"

namespace Vu::Design {

/// Base of the commands that show and hide components: they act on what the text argument "Objects" names,
/// one path per line, or without it on the selection. Each is one step of undo.
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

/// "ShowAllCommand": shows whatever is hidden in the model.
class ShowAllCmdDef : public Vs::Implements<ShowAllCmdDef, VisibilityCmdDef>
{
public:
    ShowAllCmdDef();
    static Info* info();
};

/// "ToggleVisibilityCommand": hides it, or shows it if all of it is hidden.
class ToggleVisibilityCmdDef : public Vs::Implements<ToggleVisibilityCmdDef, VisibilityCmdDef>
{
public:
    ToggleVisibilityCmdDef();
    static Info* info();
};

} // namespace Vu::Design
