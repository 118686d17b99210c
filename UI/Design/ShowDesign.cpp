#include "UI/Design/ShowDesign.h"

#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/ViewMgr.h"
#include "UI/Design/DocumentKinds.h"
#include "UI/Design/Localized.h"

namespace Vu::Design {
namespace {

// Belongs to another add-in, which this one knows only by identifiers.
constexpr const wchar_t* kAssetShellCommand = L"AssetShellCommand";

void run(const wchar_t* id, CommandContext context, Vs::Status& status)
{
    context.executeImmediately(true);
    CommandMgr* manager = CommandMgr::getActiveCommandManager();
    if (!manager)
        manager = CommandMgr::get();
    status.merge(manager->executeCommand(id, context));
}

} // namespace

Vs::Document* createDesign(Vs::Status& status)
{
    return Vs::DocumentMgr::get()->create(Vs::AssetTypeMgr::get()->assetType(kDesignAssetType), status);
}

void showDesign(Vs::Document* document, Vs::Status& status)
{
    AssetSession* session =
        document->activeAsset() ? SessionMgr::get()->assetSession(document->activeAsset()) : nullptr;
    if (!session) {
        status.addError(
            localizedFormat("NothingToShow", "\"%1%\" contains nothing to show.", document->displayName()));
        return;
    }
    CommandContext context = CommandContext::activeContext();
    context.addArgument(Vs::UniqueString::find("AssetSession", true), session);
    run(kAssetShellCommand, context, status);
    // The view itself frames what arrives later, unless the camera is moved first.
    const Vs::Component* parts = document->activeAsset()->components();
    GraphicsView* view = session->viewManager()->graphicsView();
    if (view && parts && !parts->children.empty())
        view->fit();
}

} // namespace Vu::Design
