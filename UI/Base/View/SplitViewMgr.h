#pragma once

#include "Server/Base/Object.h"
#include "Server/Scene/Camera.h"

#include <string>
#include <vector>

namespace Vu {

class GraphicsCanvas;
class GraphicsView;

/// The canvases of the active window as a split view: which one is active, and what they share.
class SplitViewMgr : public Vs::Implements<SplitViewMgr>, private Vs::Scene::CameraEventSite
{
public:
    static SplitViewMgr* get();

    /// Null as long as nothing was bound; a canvas that goes, or whose arrangement does, leaves null. An
    /// arrangement that is shown again has the active canvas that it had.
    GraphicsCanvas* activeCanvas() const { return m_canvas; }
    /// Tells the split view sites when it is another one: deactivate for the old one's view, activate for the
    /// new one's.
    void activeCanvas(GraphicsCanvas* canvas);
    GraphicsView* activeView() const { return m_view; }
    void activeView(GraphicsView* view) { m_view = view; }

    /// How many canvases show a view.
    int visibleViews() const;
    /// Has the views take the sizes of their canvases. If a new layout brought canvases without a view, all
    /// give up theirs and none counts as the active one any more, so that the next binding serves them all.
    void updateViewsSize();

    /// Gives all other visible views the active view's camera, once.
    void copyCamera();
    /// Switches sharing on or off. While it is on, all visible views see the same: at first what the active
    /// one does, then every change of one's camera is made in the others.
    void shareCamera();

    /// Whether the present layout has room for the browser.
    bool validToShowBrowser() const { return m_validToShowBrowser; }
    void validToShowBrowser(bool value) { m_validToShowBrowser = value; }

    /// Hands the form's name to the active shell, if that has forms.
    void updateArrangement(const std::wstring& filter);

    /// For GraphicsCanvas: it shows another view.
    void viewChanged(const GraphicsCanvas* canvas);
    /// For the windows: these canvases are in sight from now on, or no longer.
    void sightChanged(const std::vector<GraphicsCanvas*>& canvases);
    /// For GraphicsCanvas and GraphicsView: forgets what is about to go. A canvas that has nothing to show
    /// any more has one more view of what is shown beside it at the end of the event.
    void forget(const GraphicsCanvas* canvas);
    void forget(const GraphicsView* view);

private:
    void cameraChanged(Vs::Scene::CameraEvent* event) override;
    void copyFrom(const GraphicsView& from);
    void attend(GraphicsCanvas* canvas);
    void fillEmpty() const;

    std::vector<GraphicsCanvas*> m_attended; ///< All that were active, the last one first.
    GraphicsCanvas* m_canvas = nullptr;
    GraphicsView* m_view = nullptr;
    bool m_shares = false;
    bool m_copying = false; ///< What changes now is a copy.
    bool m_validToShowBrowser = true;
};

} // namespace Vu
