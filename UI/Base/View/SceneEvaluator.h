#pragma once

#include "Server/Base/Point2.h"
#include "Server/Scene/HitInfo.h"

namespace Vu {

class GraphicsCanvas;
class GraphicsView;

/// Finds what lies at a place of a canvas. Nothing is searched until it is asked for. Main thread only.
class SceneEvaluator : public Vs::Implements<SceneEvaluator>
{
public:
    /// For a place of the canvas whose mouse event is being delivered, and outside of events of the active
    /// canvas (MouseEventSource::canvas). Null where there is no canvas, or no view with a model in it. The
    /// evaluator belongs to this class and is good until the next call.
    [[nodiscard]] static SceneEvaluator* get(const Vs::Point2& position);

    GraphicsView* view() const { return m_view; }
    /// The camera of the model's fragment; never null.
    Vs::Scene::Camera* camera() const;
    Rendra::Graphics::GroupNode* viewFragmentNode() const { return m_fragment.get(); }

    /// The nearest body, or, with `background`, what stands for the place beside all bodies; null if there is
    /// neither. Found once for one place of an unchanged view.
    Vs::Scene::SceneSelection* sceneSelection(bool background);
    /// What a wish finds here. Found once for one place of an unchanged view and the same wish.
    const std::vector<Vs::StrongRef<Vs::Scene::SceneSelection>>&
    sceneSelections(const Vs::Scene::PickWish& wish);
    /// Forgets the results: the camera or the scene has changed.
    void invalidate();

private:
    SceneEvaluator(GraphicsCanvas* canvas, GraphicsView* view, Rendra::Graphics::GroupNode* fragment,
                   const Vs::Point2& position);
    bool isStillGood(const GraphicsCanvas* canvas, const GraphicsView* view,
                     const Rendra::Graphics::GroupNode* fragment, const Vs::Point2& position) const;

    GraphicsCanvas* m_canvas;
    GraphicsView* m_view;
    Vs::StrongRef<Rendra::Graphics::GroupNode> m_fragment;
    Vs::Point2 m_position;
    uint64_t m_sceneRevision, m_cameraRevision;
    Vs::StrongRef<Vs::Scene::SceneSelection> m_found;
    std::optional<Vs::Scene::PickWish> m_wish; ///< Of what m_all was found for.
    std::vector<Vs::StrongRef<Vs::Scene::SceneSelection>> m_all;
    bool m_searched = false, m_searchedBackground = false;
};

} // namespace Vu
