#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/Camera/CameraCmd.h"

namespace Vs::Scene {
class Camera;
class ViewFragment;
} // namespace Vs::Scene

namespace Vu::Commands {

/// A way to look at the model, which the camera glides to.
struct StandardView
{
    CommandRow row;
    /// Changes the camera; false if it stays as it is.
    bool (*look)(Vs::Scene::Camera& camera, Vs::Scene::ViewFragment& fragment);
};

/// Looks at the model from one of its sides, from a corner, at what is selected, or in the other projection.
/// One class for all of them, since only where the camera goes is different.
class StandardViewCmdDef : public Vs::Implements<StandardViewCmdDef, CameraCmdDef>
{
public:
    /// The identity and the view outlive the definition.
    StandardViewCmdDef(Info* identity, const StandardView& view);
    /// Makes the definitions at the first call. They aren't among the add-in's members.
    static void createCommandDefs();

    const StandardView& view() const { return m_view; }

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;

private:
    const StandardView& m_view;
};

class StandardViewCmd : public Vs::Implements<StandardViewCmd, SimpleCommand>
{
public:
    StandardViewCmd(StandardViewCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;

private:
    const StandardView& m_view;
};

} // namespace Vu::Commands
