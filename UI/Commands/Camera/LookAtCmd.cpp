#include "UI/Commands/Camera/LookAtCmd.h"

#include "Server/Base/ResourceMgr.h"
#include "Server/DataModel/Selection/SelectionFilter.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/CameraParameters.h"
#include "Server/Scene/LogicalToSceneSelectionFilter.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/SelectionCommandInput.h"
#include "UI/Base/View/CameraTransition.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/TransitionMgr.h"
#include "UI/Commands/Camera/ActiveView.h"
#include "UI/Commands/Camera/CameraPivot.h"
#include "UI/Commands/Camera/ToolMouse.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"

namespace Vu::Commands {

using Vs::Scene::Camera;
using Vs::Scene::RawHitInfo;

/// The hook that rules are attached to; it has none of its own.
class LookAtSelectionFilter : public Vs::Implements<LookAtSelectionFilter, Vs::CompositeSelectionFilter>
{
public:
    LookAtSelectionFilter() : Implements(ELogic::All) {}
    bool mayAccept(Vs::ObjectPath::Leaf leaf) const override { return leaf == Vs::ObjectPath::Leaf::Face; }
};

namespace {

constexpr int kPickCursor = 1;

Info* facesInputInfo()
{
    static Info info(L"LookAtFacesInput", localized("LookAtFacesInput", "Plane"), nullptr);
    return &info;
}

/// The first selection, with groups replaced by their members, however deep; null if there is none. A group
/// that stands for one thing counts as one.
Vs::Selection* firstLeaf(const std::vector<Vs::StrongRef<Vs::Selection>>& selections)
{
    for (const auto& selection : selections) {
        const auto* group = Vs::cast<Vs::GroupSelection>(selection.get());
        if (!group || group->isOneThing())
            return selection.get();
        if (Vs::Selection* leaf = firstLeaf(group->members()))
            return leaf;
    }
    return nullptr;
}

/// Faces the place from the distance that the camera has to its target. A place without a normal changes
/// nothing.
void face(const RawHitInfo& hit, const GkVector3d& groundUp, Camera& camera)
{
    GkVector3d normal = hit.localNormal();
    if (normal.isZeroLength(GkContext::gTol))
        return;
    const GkMatrix3d& toWorld = hit.localToWorldTransform();
    normal.transformBy(toWorld).normalize();
    const GkPoint3d place = toWorld * hit.localHitPoint();
    GkPoint3d eye;
    eye.setToSum(place, normal * camera.target().distanceTo(camera.position()));
    camera.target(place);
    camera.position(eye);
    if (UIBaseOptionGroup::get()->cameraPivotEnabled()) {
        camera.pivot(place);
        camera.pivotEnabled(true);
        showCameraPivot(false);
        hideCameraPivotDelayed();
    }
    const GkVector3d look = place - eye;
    camera.up(look.isParallelTo(groundUp, GkContext::gTol) ? look.perpVector() : groundUp);
}

} // namespace

constinit const CommandRow LookAtCmdDef::kRow = {
    .key = L"LookAtCommand", .title = "Look At", .icon = &Resources::LookAt, .arguments = {L"Passive"}};

Vs::CompositeSelectionFilter* lookAtFilter()
{
    static auto* const filter = new LookAtSelectionFilter;
    return filter;
}

LookAtCmd::LookAtCmd(LookAtCmdDef* definition, CommandContext* context) : Implements(definition, context)
{
    repeatable(true);
    showToolCursor(*this, Vs::CursorResource::defaultCursor(kPickCursor));
    CommandInputSet* inputs = CommandInputSet::make(this);
    m_facesInput = SelectionCommandInput::make(inputs, 0, facesInputInfo());
    m_facesInput->enableTranscript(false);
    m_facesInput->requiredQuantity(true, 1);
    m_facesInput->requiredFilter(lookAtFilter());
    m_facesInput->requiresExecution(true);
    commandInputSet(inputs);
    CommandInputSetEventSource::get()->subscribe(this, inputs);
}

LookAtCmd::~LookAtCmd()
{
    CommandInputSetEventSource::get()->unsubscribe(this, CommandBase::commandInputSet());
}

// Unlike the other camera commands, this one needs the selection, which the base class suspends.
void LookAtCmd::onActivate()
{
    Implements::onActivate();
    if (Vs::SelectionMgr* selection = selectionManager())
        selection->resumeSelection();
}

// Whoever chose it from a face's menu has already picked the face.
void LookAtCmd::onPostActivate()
{
    Implements::onPostActivate();
    const bool fromMenu = commandContext()->commandAccessPoint() == ECommandAccessPoint::ContextMenu;
    if (!fromMenu || !selectionManager())
        return;
    const auto& selected = selectionManager()->selectionSet().selections();
    const auto* face = selected.size() == 1 ? Vs::cast<Vs::LogicalSelection>(selected[0].get()) : nullptr;
    if (face && face->path().leaf == Vs::ObjectPath::Leaf::Face && face->picked())
        m_facesInput->add(selected[0]);
}

void LookAtCmd::onDeactivate()
{
    if (Vs::SelectionMgr* selection = selectionManager())
        selection->suspendSelection();
    Implements::onDeactivate();
}

void LookAtCmd::commandInputSetExecute(CommandInputEvent*)
{
    onExecute();
}

void LookAtCmd::onExecute()
{
    GraphicsView* view = graphicsViewOf(assetSession());
    if (!view)
        return;
    const auto* leaf = Vs::cast<Vs::LogicalSelection>(firstLeaf(m_facesInput->selectionSet().selections()));
    const Vs::Scene::SceneSelection* picked = Vs::Scene::LogicalToSceneSelectionFilter::filter(leaf);
    if (picked && picked->hitInfo() && TransitionMgr::get())
        glideTo(*picked->hitInfo(), view);
    terminateCommand();
}

void LookAtCmd::glideTo(const RawHitInfo& hit, GraphicsView* view)
{
    TransitionMgr* transitions = TransitionMgr::get();
    Transition* transition = transitions->beginTransition();
    if (!transition)
        return;
    if (Vs::Scene::ViewFragment* fragment = firstFragment(view)) {
        Camera* camera = fragment->camera();
        const Vs::Scene::CameraParameters before(*camera);
        face(hit, fragment->data()->renderParams(0)->groundPlaneOrientation(), *camera);
        const Vs::Scene::CameraParameters after(*camera);
        transition->add(CameraTransition::make(transition, before, after, camera));
        const TranscriptCameraTrigger trigger(camera);
    }
    transitions->endTransition();
}

} // namespace Vu::Commands
