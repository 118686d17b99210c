#include "UI/Commands/Camera/NamedViewCmds.h"

#include "Server/CommonData/CommonDataAssetSettings.h"
#include "Server/CommonData/NamedViewRequests.h"
#include "Server/CommonData/NamedViewSelection.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Scene/CameraParameters.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/CameraTransition.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/TransitionMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Camera/ActiveView.h"
#include "UI/Commands/Resources.h"

namespace Vu::Commands {

using Vs::NameView::DeleteNamedViewRequest;
using Vs::NameView::NamedView;
using Vs::NameView::NamedViews;
using Vs::NameView::NewNamedViewRequest;
using Vs::NameView::UpdateNamedViewNameRequest;
using Vs::Scene::Camera;

// clang-format off
constinit const CommandRow AddNamedViewCmdDef::kRow          = {.key = L"AddNamedViewCommand", .title = "New Named View", .icon = &Resources::NewNamedView, .arguments = {L"NamedViewName"}};
constinit const CommandRow RemoveNamedViewCmdDef::kRow       = {.key = L"RemoveNamedViewCommand", .title = "Delete", .icon = &Resources::DeleteNamedView, .arguments = {L"NamedViewName"}};
constinit const CommandRow RestoreCameraCmdDef::kRow         = {.key = L"RestoreCameraCommand", .title = "Restore Named View", .arguments = {L"NamedViewName"}};
constinit const CommandRow UpdateNamedViewCameraCmdDef::kRow = {.key = L"UpdateNamedViewCameraCommand", .title = "Update Named View", .icon = &Resources::UpdateNamedView, .arguments = {L"NamedViewName"}};
constinit const CommandRow UpdateNamedViewNameCmdDef::kRow   = {.key = L"UpdateNamedViewNameCommand", .title = "Update Named View Name", .arguments = {L"NamedViewName", L"NewNamedViewName"}};
// clang-format on

namespace {

/// Long enough to see where one goes, since a named view may be anywhere.
constexpr unsigned kGlideMilliseconds = 800;

const wchar_t* const kBaseName = L"NamedView";

/// The only thing that is selected in the active session; null if there are others, or nothing.
const Vs::Selection* onlySelection()
{
    const AssetSession* session = SessionMgr::get()->activeAssetSession();
    if (!session)
        return nullptr;
    const auto& selections = session->selectionManager()->selectionSet().selections();
    return selections.size() == 1 ? selections.front().get() : nullptr;
}

bool modifiableViewSelected()
{
    const Vs::StrongRef<NamedView> view = selectedNamedView();
    return view && view->enableModify();
}

/// Takes over the camera of the named view, all at once.
void restore(const NamedView& view, Camera& camera)
{
    const Camera& kept = *view.camera();
    camera.position(kept.position());
    camera.target(kept.target());
    camera.up(kept.up());
    camera.extentsWidth(kept.extentsWidth());
    camera.extentsHeight(kept.extentsHeight());
    // A standard view holds only a direction.
    if (view.isFixed())
        if (const Vs::Scene::ViewFragment* fragment = firstFragment(ActiveAssetUtils::graphicsView()))
            if (const BBox bounds = fragment->bounds(); !bounds.isEmpty()) {
                ActiveAssetUtils::graphicsView()->settleLayout();
                camera.fit(bounds);
            }
    Vs::Scene::CameraEvent event(&camera);
    Vs::Scene::CameraEventSource::get()->fireCameraChanged(&event);
}

} // namespace

NamedViews* namedViewsOfAsset()
{
    auto* settings = Vs::cast<Vs::CommonData::CommonDataAssetSettings>(ActiveAssetUtils::assetSettings());
    return settings ? settings->namedViews() : nullptr;
}

Vs::StrongRef<NamedView> selectedNamedView()
{
    const auto* selection = Vs::cast<Vs::NameView::NamedViewSelection>(onlySelection());
    return selection ? selection->namedView() : nullptr;
}

const Vs::UniqueString* NamedViewCmdDef::namedViewNameArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("NamedViewName", true);
    return name;
}

bool NamedViewCmdDef::onIsApplicable(CommandContext*) const
{
    return namedViewsOfAsset() != nullptr;
}

ECommandType NamedViewCmd::onCommandType() const
{
    return ECommandType::Nested;
}

std::wstring NamedViewCmd::viewName() const
{
    std::wstring name = commandContext()->argumentAsString(NamedViewCmdDef::namedViewNameArgumentName());
    if (name.empty())
        if (const Vs::StrongRef<NamedView> view = selectedNamedView())
            name = view->name();
    return name;
}

void NamedViewCmd::runAndDestroy(Vs::Request* request, Vs::Status& status)
{
    executeRequest(request, false, {}, status);
    request->destroy();
}

std::wstring AddNamedViewCmdDef::generateNamedViewName()
{
    const NamedViews* views = namedViewsOfAsset();
    return views ? views->generateNamedViewName(kBaseName) : std::wstring();
}

bool AddNamedViewCmdDef::onAddToContextMenu()
{
    const auto* folder = Vs::cast<Vs::NameView::NamedViewsSelection>(onlySelection());
    return folder && folder->namedViews();
}

void AddNamedViewCmd::onExecute(Vs::Status& status)
{
    Vs::Asset* asset = ActiveAssetUtils::asset();
    Camera* camera = settledCamera();
    if (asset && camera && namedViewsOfAsset())
        runAndDestroy(NewNamedViewRequest::make(asset, camera), status);
}

bool RemoveNamedViewCmdDef::onAddToContextMenu()
{
    return modifiableViewSelected();
}

void RemoveNamedViewCmd::onExecute(Vs::Status& status)
{
    const std::wstring name = viewName();
    if (!name.empty())
        runAndDestroy(DeleteNamedViewRequest::make(ActiveAssetUtils::asset(), name), status);
}

// The camera reaches its final state at once; the transition only animates the way there.
void RestoreCameraCmd::onExecute(Vs::Status&)
{
    NamedViews* views = namedViewsOfAsset();
    Camera* camera = settledCamera();
    const Vs::StrongRef<NamedView> view = views && camera ? views->find(viewName()) : nullptr;
    TransitionMgr* transitions = TransitionMgr::get();
    Transition* transition = view && transitions ? transitions->beginTransition() : nullptr;
    if (!transition)
        return;
    const Vs::Scene::CameraParameters before(*camera);
    restore(*view, *camera);
    const Vs::Scene::CameraParameters after(*camera);
    transition->add(CameraTransition::make(transition, before, after, camera));
    const TranscriptCameraTrigger trigger(camera);
    transitions->currentTransition()->period(kGlideMilliseconds);
    transitions->endTransition();
    WorkspaceWindow::invalidate(kInvalidateAll);
}

bool UpdateNamedViewCameraCmdDef::onAddToContextMenu()
{
    return modifiableViewSelected();
}

void UpdateNamedViewCameraCmd::onExecute(Vs::Status& status)
{
    NamedViews* views = namedViewsOfAsset();
    const Camera* camera = settledCamera();
    const std::wstring name = viewName();
    if (views && camera && !name.empty())
        views->updateNamedViewCamera(name, camera, status);
}

const Vs::UniqueString* UpdateNamedViewNameCmdDef::newNamedViewNameArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("NewNamedViewName", true);
    return name;
}

// Nothing falls back on the selection: a script that forgot a name renames nothing.
void UpdateNamedViewNameCmd::onExecute(Vs::Status& status)
{
    const auto argument = [&](const Vs::UniqueString* key) {
        return commandContext()->argumentAsString(key);
    };
    const std::wstring name = argument(NamedViewCmdDef::namedViewNameArgumentName());
    const std::wstring newName = argument(UpdateNamedViewNameCmdDef::newNamedViewNameArgumentName());
    if (!name.empty() && !newName.empty())
        runAndDestroy(UpdateNamedViewNameRequest::make(ActiveAssetUtils::asset(), name, newName), status);
}

} // namespace Vu::Commands
