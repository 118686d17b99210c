#include "UI/Commands/Camera/FitCmd.h"

#include "Server/Scene/Camera.h"
#include "Server/Scene/CameraParameters.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/View/CameraTransition.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/TransitionMgr.h"
#include "UI/Commands/Camera/ActiveView.h"
#include "UI/Commands/Resources.h"

namespace Vu::Commands {

constinit const CommandRow FitCmdDef::kRow = {
    .key = L"FitCommand", .title = "Fit", .icon = &Resources::Fit, .arguments = {L"Passive"}};

ECommandType FitCmd::onCommandType() const
{
    return ECommandType::Nested;
}

// The camera reaches its final state at once; the transition only animates the way there.
void FitCmd::onExecute(Vs::Status&)
{
    GraphicsView* view = graphicsViewOf(assetSession());
    TransitionMgr* transitions = TransitionMgr::get();
    if (!view || !transitions)
        return;
    view->settleLayout();
    Transition* transition = transitions->beginTransition();
    if (!transition)
        return;
    Vs::Scene::ViewFragment* fragment = view->viewNode() ? firstFragment(view) : nullptr;
    if (fragment) {
        Vs::Scene::Camera* camera = fragment->camera();
        const Vs::Scene::CameraParameters before(*camera);
        camera->fit(fragment->bounds());
        const Vs::Scene::CameraParameters after(*camera);
        transition->add(CameraTransition::make(transition, before, after, camera));
        const TranscriptCameraTrigger trigger(camera);
    }
    transitions->endTransition();
}

} // namespace Vu::Commands
