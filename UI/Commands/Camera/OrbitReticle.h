#pragma once

#include "Server/Base/Point2.h"
#include "Server/Scene/Node.h"

namespace Vs::Scene {
class ViewFragment;
}

namespace Vu {
class GraphicsView;
}

namespace Vu::Commands {

/// Where the pointer stands relative to the reticle.
enum EOrbitZone {
    kOutside = -1, ///< Or exactly on the circle.
    kInCircle = 0,
    kOnVerticalTick = 1,
    kOnHorizontalTick = 2,
    kInRing = 3,
};

/// A circle with ticks in the middle of the view, always the same fraction of its size: a fragment of its own
/// over the model's, with a camera that looks straight on.
class OrbitReticle
{
public:
    OrbitReticle();
    ~OrbitReticle();
    OrbitReticle(const OrbitReticle&) = delete;
    OrbitReticle& operator=(const OrbitReticle&) = delete;

    /// Shows it in the view of the active session that has the user's attention; returns whether there is
    /// one.
    bool show();
    void hide();
    bool shown() const { return m_shown; }

    /// The view that it is shown in; null once that has gone.
    GraphicsView* view() const;

    /// The EOrbitZone of a place of the canvas; kOutside while it isn't shown in one.
    int zone(const Vs::Point2& position) const;

private:
    bool m_shown = false;
    double m_radius, m_tickEnd; ///< As parts of what the fragment's camera sees.
    Vs::StrongRef<Vs::Scene::ViewFragment> m_fragment;
    Vs::StrongRef<Rendra::Graphics::GroupNode> m_root;
    Vs::StrongRef<Rendra::Graphics::GroupNode> m_viewNode; ///< Of the view that it is shown in.
};

} // namespace Vu::Commands
