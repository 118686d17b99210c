#pragma once

#include "UI/Base/View/SplitViewEvents.h"
#include "UI/Base/Window/PlacedHuds.h"

#include <QPointer>
#include <QWidget>

#include <string>
#include <vector>

namespace Vu {

class CommandButton;
class GraphicsCanvas;

/// A canvas with the heads-up displays that lie over it. Of several canvases the active one has a frame in
/// the colour of what is selected, and it alone shows the displays, which work on it.
class HudFrame : public QWidget, private SplitViewEventSite
{
public:
    explicit HudFrame(QWidget* parent);
    ~HudFrame() override;

    /// Fills the frame with the canvas's widget, which stays its own.
    void canvas(GraphicsCanvas* canvas);
    /// Makes the displays; their buttons are appended.
    void addHuds(std::vector<CommandButton*>& buttons);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    void splitViewActivate(SplitViewEvent* event) override;
    void splitViewDeactivate(SplitViewEvent* event) override;
    bool isOneOfSeveral() const;
    bool isActive() const;
    struct Hud
    {
        QWidget* bar;
        std::wstring placement;
    };
    void place();

    GraphicsCanvas* m_canvas = nullptr;
    QPointer<QWidget> m_widget; ///< The canvas's own, which may go, or move to another frame, before this.
    std::vector<Hud> m_huds;
    PlacedHuds m_placed{this};
};

} // namespace Vu
