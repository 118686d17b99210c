#include "UI/Base/Session/StepSurroundings.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/DataModel/TransactionMgr.h"
#include "Server/DataModel/TransactionStepUserCache.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/CameraTransition.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/ViewMgr.h"

#include <algorithm>

namespace Vu {

namespace {

using Vs::Scene::Camera;
using Vs::Scene::CameraParameters;

bool isWanted()
{
    return UIBaseOptionGroup::get()->undoSelectionAndCamera();
}

std::vector<Camera*> camerasOf(AssetSession& session)
{
    std::vector<Camera*> cameras;
    ViewMgr* views = session.viewManager();
    if (const GraphicsView* view = views ? views->graphicsView() : nullptr)
        for (const Vs::Scene::ViewFragment* fragment : view->viewFragments())
            cameras.push_back(fragment->camera());
    return cameras;
}

void select(AssetSession& session, std::vector<Vs::StrongRef<Vs::Selection>> selected)
{
    std::erase_if(selected, [&](const Vs::StrongRef<Vs::Selection>& each) {
        const auto* logical = Vs::cast<Vs::LogicalSelection>(each.get());
        return logical && !session.asset()->findComponent(logical->componentId());
    });
    session.selectionManager()->selectionSet().replace(selected);
}

void look(AssetSession& session, const std::vector<CameraParameters>& kept)
{
    Transition* transition = TransitionMgr::get()->beginTransition();
    if (!transition)
        return;
    const std::vector<Camera*> cameras = camerasOf(session);
    // A view may have been split, or put together, since.
    for (size_t i = 0; i < std::min(cameras.size(), kept.size()); ++i)
        if (const CameraParameters now(*cameras[i]); !now.isEqualTo(kept[i]))
            transition->add(CameraTransition::make(transition, now, kept[i], cameras[i]));
    TransitionMgr::get()->endTransition();
}

} // namespace

class StepSurroundings::Kept : public Vs::Implements<Kept, Vs::TransactionStepUserCache>
{
public:
    Kept(const std::wstring& name, Surroundings before, Surroundings after)
        : Implements(name), before(std::move(before)), after(std::move(after))
    {
    }
    const Surroundings before, after;
};

void StepSurroundings::install()
{
    static auto* const observer = new StepSurroundings;
    CommandMgr::addObserver(observer);
}

StepSurroundings::Surroundings StepSurroundings::of(AssetSession& session)
{
    Surroundings now{session.selectionManager()->selectionSet().selections(), {}};
    for (const Camera* camera : camerasOf(session))
        now.cameras.emplace_back(*camera);
    return now;
}

void StepSurroundings::before(const CommandRun& run)
{
    AssetSession* session = isWanted() && run.depth == 0 ? SessionMgr::get()->activeAssetSession() : nullptr;
    if (!session)
        return;
    const Vs::TransactionNode& steps = *Vs::TransactionMgr(session->asset()).sessionTransaction();
    const auto& undone = steps.undoneChanges();
    m_begun.push_back({run.manager, run.definition, session->asset(), steps.transactionToUndo(),
                       undone.empty() ? nullptr : undone.back().get(), of(*session)});
}

void StepSurroundings::after(const CommandRun& run)
{
    const auto begun = std::find_if(m_begun.rbegin(), m_begun.rend(), [&](const Begun& each) {
        return run.depth == 0 && each.manager == run.manager && each.definition == run.definition;
    });
    if (begun == m_begun.rend())
        return;
    Begun its = std::move(*begun);
    m_begun.erase(std::next(begun).base());
    AssetSession* session = SessionMgr::get()->getOpenAssetSession(its.asset);
    if (!session)
        return;
    Vs::TransactionMgr transactions(session->asset());
    const Vs::TransactionNode& steps = *transactions.sessionTransaction();
    const Vs::TransactionNode* last = steps.transactionToUndo();
    if (last && last != its.lastDone && last != its.lastUndone && steps.undoneChanges().empty())
        transactions.keepWithLast(
            std::make_shared<Kept>(run.definition->info()->name(), std::move(its.before), of(*session)));
}

void StepSurroundings::bringBack(AssetSession& session, bool undone)
{
    const Vs::TransactionNode& steps = *Vs::TransactionMgr(session.asset()).sessionTransaction();
    const Vs::TransactionNode* step = undone ? steps.transactionToRedo() : steps.transactionToUndo();
    const auto* kept = step && isWanted() ? Vs::cast<Kept>(step->userCache()) : nullptr;
    if (!kept)
        return;
    const Surroundings& then = undone ? kept->before : kept->after;
    select(session, then.selected);
    look(session, then.cameras);
}

} // namespace Vu
