#include "UI/Commands/Documents/ShownState.h"

#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/SelectedPaths.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/DataModel/Selection/VisibilityRequest.h"
#include "Server/DataModel/Transaction.h"
#include "Server/Scene/Camera.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Camera/ActiveView.h"

#include <memory>
#include <optional>

namespace Vu::Commands {

namespace {

void addHidden(const Vs::Component& parent, const std::wstring& path, std::vector<std::wstring>& hidden)
{
    const std::vector<std::wstring> paths = Vs::childPaths(parent, path);
    for (size_t i = 0; i < paths.size(); ++i) {
        if (!parent.children[i]->visible)
            hidden.push_back(paths[i]);
        addHidden(*parent.children[i], paths[i], hidden);
    }
}

} // namespace

ShownState::ShownState()
{
    if (const Vs::Scene::Camera* camera = settledCamera())
        m_view = {true,         camera->projection(),   camera->position(),     camera->target(),
                  camera->up(), camera->extentsWidth(), camera->extentsHeight()};
    if (const AssetSession* session = SessionMgr::get()->activeAssetSession()) {
        m_selected = Vs::pathTextsIn(session->selectionManager()->selectionSet(), *session->asset());
        addHidden(*session->asset()->components(), L"", m_hidden);
    }
}

void ShownState::restore() const
{
    if (Vs::Scene::Camera* camera = m_view.known ? settledCamera() : nullptr) {
        camera->projection(m_view.projection);
        camera->position(m_view.position);
        camera->target(m_view.target);
        camera->up(m_view.up);
        camera->extentsWidth(m_view.width);
        camera->extentsHeight(m_view.height);
    }
    const AssetSession* session = SessionMgr::get()->activeAssetSession();
    if (!session || m_selected.empty())
        return;
    std::vector<Vs::StrongRef<Vs::Selection>> found;
    for (const std::wstring& text : m_selected) {
        Vs::Status ignored;
        const auto path = Vs::findPath(*session->asset(), text, ignored);
        if (path && Vs::resolvePath(*path, *session->asset(), ignored))
            found.emplace_back(new Vs::LogicalSelection(session->asset(), *path, nullptr));
    }
    session->selectionManager()->selectionSet().replace(found);
}

void ShownState::restoreHidden(Vs::Status& status) const
{
    const AssetSession* session = SessionMgr::get()->activeAssetSession();
    std::vector<Vs::ObjectPath> found;
    for (const std::wstring& text : m_hidden) {
        Vs::Status ignored;
        if (auto path = session ? Vs::findPath(*session->asset(), text, ignored) : std::nullopt)
            found.push_back(std::move(*path));
    }
    if (found.empty())
        return;
    const std::unique_ptr<Vs::Request, void (*)(Vs::Request*)> request(
        Vs::VisibilityRequest::make(std::move(found), false), [](Vs::Request* each) { each->destroy(); });
    Vs::Transaction step(session->asset(), request->name());
    if (request->execute(session->asset(), status))
        step.commit();
}

} // namespace Vu::Commands
