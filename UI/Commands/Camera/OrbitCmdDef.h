#pragma once

#include "UI/Base/Command/InputControl.h"
#include "UI/Commands/Camera/CameraCmd.h"

#include <memory>

namespace Vu::Commands {

/// Turns the view, following the camera's own axes.
class FreeOrbitCmdDef : public Vs::Implements<FreeOrbitCmdDef, CameraCmdDef>
{
public:
    static const CommandRow kRow;
    static Info* info();
    FreeOrbitCmdDef() : FreeOrbitCmdDef(info()) {}

    bool constrained() const { return m_constrained; }

protected:
    explicit FreeOrbitCmdDef(Info* info) : Implements(info) {}
    CommandBase* onCreateCommand(CommandContext* context) override;

    bool m_constrained = false;
};

/// Turns the view about an axis of the model, so that its up direction stays up.
class ConstrainedOrbitCmdDef : public RowDefinition<ConstrainedOrbitCmdDef, FreeOrbitCmdDef>
{
public:
    static const CommandRow kRow;
    ConstrainedOrbitCmdDef() { m_constrained = true; }
};

/// The two of them as one entry of a toolbar. Choosing a flavour makes it the one that the mouse buttons use.
class OrbitCmdDef : public RowDefinition<OrbitCmdDef, FreeOrbitCmdDef, IListControlHandler>
{
public:
    static const CommandRow kRow;
    using RowDefinition::info;

    /// "orbitType": the argument that names the flavour by its definition's key.
    static const Vs::UniqueString* orbitType();
    /// Lights the entry while an orbit runs.
    static void activeInputControl(bool active);
    /// The definition of the flavour that the user's option names.
    static CommandDefinition* usedOrbitCommandDefinition();

    void onListSelectionChanged(Info* item) override;

protected:
    /// Null unless the context names a flavour.
    CommandBase* onCreateCommand(CommandContext* context) override;
    InputControl* onInputControl() override;
    void onUpdateInputControl(CommandContext* context) override;

private:
    std::unique_ptr<ListControl> m_control;
};

} // namespace Vu::Commands
