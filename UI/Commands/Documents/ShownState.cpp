#include "UI/Commands/Documents/ShownState.h"

#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/SelectedPaths.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Scene/Camera.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Camera/ActiveView.h"

namespace Vu::Commands {

ShownState::ShownState()
{
    if (const Vs::Scene::Camera* camera = settledCamera())
        m_view = {true,         camera->projection(),   camera->position(),     camera->target(),
                  camera->up(), camera->extentsWidth(), camera->extentsHeight()};
    if (const AssetSession* session = SessionMgr::get()->activeAssetSession())
        m_selected = Vs::pathTextsIn(session->selectionManager()->selectionSet(), *session->asset());
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

} // namespace Vu::Commands
