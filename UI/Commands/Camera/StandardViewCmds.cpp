#include "UI/Commands/Camera/StandardViewCmds.h"

#include "Server/CommonData/CommonDataAssetSettings.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/CameraParameters.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/View/CameraTransition.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/TransitionMgr.h"
#include "UI/Commands/Camera/ActiveView.h"
#include "UI/Commands/Resources.h"

#include <list>

namespace Vu::Commands {
namespace {

using Vs::Scene::Camera;
using Vs::Scene::ViewFragment;

/// Where the eye stands, along right, front and up of the model.
struct Eye
{
    double right, front, up;
};

bool lookFrom(Camera& camera, ViewFragment& fragment, const Eye& eye)
{
    const auto* settings =
        Vs::cast<Vs::CommonData::CommonDataAssetSettings>(ActiveAssetUtils::assetSettings());
    if (!settings)
        return false;
    const GkVector3d up = settings->sceneUp(), front = settings->sceneFront();
    const bool upright = eye.right != 0 || eye.front != 0;
    camera.look(-(up.crossProduct(front) * eye.right + front * eye.front + up * eye.up),
                upright ? up : front * (eye.up > 0 ? -1.0 : 1.0));
    camera.fit(fragment.bounds());
    return true;
}

template <Eye kEye>
bool from(Camera& camera, ViewFragment& fragment)
{
    return lookFrom(camera, fragment, kEye);
}

bool home(Camera& camera, ViewFragment& fragment)
{
    const auto* settings =
        Vs::cast<Vs::CommonData::CommonDataAssetSettings>(ActiveAssetUtils::assetSettings());
    if (!settings)
        return false;
    const auto view = settings->homeView();
    camera.look(-view.eye, view.up);
    camera.fit(fragment.bounds());
    return true;
}

bool toggleProjection(Camera& camera, ViewFragment&)
{
    camera.toggleProjection(camera.projection() == Vs::Scene::kPerspectiveProjection
                                ? Vs::Scene::kParallelProjection
                                : Vs::Scene::kPerspectiveProjection);
    return true;
}

BBox boundsOfSelection()
{
    BBox all;
    Vs::SelectionMgr* manager = ActiveAssetUtils::selectionManager();
    const Vs::Asset* asset = ActiveAssetUtils::asset();
    if (manager && asset)
        for (const auto& selection : manager->selectionSet().selections()) {
            const auto* object = Vs::cast<Vs::LogicalSelection>(selection.get());
            if (BBox box; object && object->calculateBounds(*asset, box))
                all.add(box);
        }
    return all;
}

bool fitSelection(Camera& camera, ViewFragment&)
{
    const BBox box = boundsOfSelection();
    if (!box.isEmpty())
        camera.fit(box);
    return !box.isEmpty();
}

// clang-format off
constinit const StandardView kViews[] = {
    {{.key = L"HomeViewCommand",      .title = "Home"},                                                    &home},
    {{.key = L"FitSelectionCommand",  .title = "Fit Selection", .icon = &Resources::Fit},                  &fitSelection},
    {{.key = L"FrontViewCommand",     .title = "Front"},                                                   &from<Eye{0, 1, 0}>},
    {{.key = L"BackViewCommand",      .title = "Back"},                                                    &from<Eye{0, -1, 0}>},
    {{.key = L"RightViewCommand",     .title = "Right"},                                                   &from<Eye{1, 0, 0}>},
    {{.key = L"LeftViewCommand",      .title = "Left"},                                                    &from<Eye{-1, 0, 0}>},
    {{.key = L"TopViewCommand",       .title = "Top"},                                                     &from<Eye{0, 0, 1}>},
    {{.key = L"BottomViewCommand",    .title = "Bottom"},                                                  &from<Eye{0, 0, -1}>},
    {{.key = L"IsometricViewCommand", .title = "Isometric"},                                               &from<Eye{-1, 1, 1}>},
    {{.key = L"TogglePerspectiveCommand", .title = "Perspective or Parallel", .icon = &Resources::ViewCameraPersp}, &toggleProjection},
};
// clang-format on

} // namespace

void StandardViewCmdDef::createCommandDefs()
{
    static std::list<Info> records;
    static std::list<StandardViewCmdDef> definitions;
    if (!definitions.empty())
        return;
    for (const StandardView& view : kViews)
        definitions.emplace_back(&records.emplace_back(makeInfo(view.row)), view);
}

StandardViewCmdDef::StandardViewCmdDef(Info* identity, const StandardView& view)
    : Implements(identity), m_view(view)
{
    readonly(true);
}

bool StandardViewCmdDef::onIsApplicable(CommandContext* context) const
{
    return CameraCmdDef::onIsApplicable(context) &&
           (m_view.look != &fitSelection || !boundsOfSelection().isEmpty());
}

CommandBase* StandardViewCmdDef::onCreateCommand(CommandContext* context)
{
    return new StandardViewCmd(this, context);
}

StandardViewCmd::StandardViewCmd(StandardViewCmdDef* definition, CommandContext* context)
    : Implements(definition, context), m_view(definition->view())
{
}

ECommandType StandardViewCmd::onCommandType() const
{
    return ECommandType::Nested;
}

// The camera reaches its final state at once; the transition only animates the way there.
void StandardViewCmd::onExecute(Vs::Status&)
{
    GraphicsView* view = graphicsViewOf(assetSession());
    TransitionMgr* transitions = TransitionMgr::get();
    if (!view || !transitions || !settledCamera())
        return;
    view->settleLayout();
    ViewFragment* fragment = view->viewNode() ? firstFragment(view) : nullptr;
    Transition* transition = fragment ? transitions->beginTransition() : nullptr;
    if (!transition)
        return;
    Camera* camera = fragment->camera();
    const Vs::Scene::CameraParameters before(*camera);
    if (m_view.look(*camera, *fragment)) {
        const Vs::Scene::CameraParameters after(*camera);
        transition->add(CameraTransition::make(transition, before, after, camera));
        const TranscriptCameraTrigger trigger(camera);
    }
    transitions->endTransition();
}

} // namespace Vu::Commands
