#include "UI/Base/View/SceneEvaluator.h"

#include "Server/Base/Require.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/MouseEvents.h"

#include <memory>

namespace Vu {

using Rendra::Graphics::GroupNode;
using Vs::Scene::SceneSelection;

SceneEvaluator* SceneEvaluator::get(const Vs::Point2& position)
{
    Vs::assertMainThread();
    static std::unique_ptr<SceneEvaluator> evaluator;
    GraphicsCanvas* canvas = MouseEventSource::get()->canvas();
    GraphicsView* view = canvas ? canvas->view() : nullptr;
    Vs::Scene::ViewFragment* fragment = view ? view->modelFragment() : nullptr;
    if (!fragment) {
        evaluator.reset();
        return nullptr;
    }
    GroupNode* node = fragment->viewFragmentNode();
    if (!evaluator || !evaluator->isStillGood(canvas, view, node, position))
        evaluator.reset(new SceneEvaluator(canvas, view, node, position));
    return evaluator.get();
}

SceneEvaluator::SceneEvaluator(GraphicsCanvas* canvas, GraphicsView* view, GroupNode* fragment,
                               const Vs::Point2& position)
    : m_canvas(canvas),
      m_view(view),
      m_fragment(fragment),
      m_position(position),
      m_sceneRevision(fragment->placesRevision()),
      m_cameraRevision(camera()->revision())
{
}

bool SceneEvaluator::isStillGood(const GraphicsCanvas* canvas, const GraphicsView* view,
                                 const GroupNode* fragment, const Vs::Point2& position) const
{
    return m_canvas == canvas && m_view == view && m_fragment == fragment && m_position == position &&
           m_sceneRevision == fragment->placesRevision() && m_cameraRevision == camera()->revision();
}

Vs::Scene::Camera* SceneEvaluator::camera() const
{
    return Vs::Scene::viewFragmentNodeData(m_fragment.get())->camera();
}

SceneSelection* SceneEvaluator::sceneSelection(bool background)
{
    // What was found without the background also holds with it; finding nothing means asking again.
    if (!m_searched || (!m_found && background && !m_searchedBackground)) {
        m_found = SceneSelection::find(m_view->viewNode(), m_fragment.get(), m_canvas->width(),
                                       m_canvas->height(), m_position.x, m_position.y, background);
        m_searched = true;
        m_searchedBackground = background;
    }
    const bool isBackground = m_found && m_found->scenePath().empty();
    return isBackground && !background ? nullptr : m_found.get();
}

const std::vector<Vs::StrongRef<SceneSelection>>&
SceneEvaluator::sceneSelections(const Vs::Scene::PickWish& wish)
{
    if (m_wish != wish) {
        m_all = SceneSelection::findAll(m_view->viewNode(), m_fragment.get(), m_canvas->width(),
                                        m_canvas->height(), m_position.x, m_position.y, wish);
        m_wish = wish;
    }
    return m_all;
}

void SceneEvaluator::invalidate()
{
    m_found.reset();
    m_searched = m_searchedBackground = false;
    m_wish.reset();
    m_sceneRevision = m_fragment->placesRevision();
    m_cameraRevision = camera()->revision();
}

} // namespace Vu
