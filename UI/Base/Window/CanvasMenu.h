#pragma once

#include "Server/Base/Point2.h"
#include "UI/Base/View/MouseEvents.h"

#include <QWidget>

namespace Vu {

/// Opens the context menus of the canvases in one window: at a click of the right button (a drag of it moves
/// the camera) while the user has no tool. What is clicked is selected first, unless it is already. The menu
/// is that of what is selected, as the menus' files describe it (MenuBar::context): "OnPart", "OnFace" or
/// "OnEdge"; beside everything it is "OnNothing". Behind it stand the commands that offer themselves. The
/// other things that lie at the place, an edge of the part or the part of an edge, have menus of their own
/// within it, which are about them. At the orbicon there is "OnCube".
class CanvasMenu : public QObject, private MouseEventSite
{
public:
    /// By which its menus are found.
    static constexpr const char* kName = "canvasMenu";

    /// Belongs to the window.
    explicit CanvasMenu(QWidget* window);
    ~CanvasMenu() override;

private:
    void mouseDown(MouseEvent* event) override;
    void mouseDragBegin(MouseEvent*) override { m_pressed = false; }
    void mouseUp(MouseEvent* event) override;
    void open(GraphicsCanvas* canvas, const Vs::Point2& place);
    void openOnCube(GraphicsCanvas* canvas, const Vs::Point2& place);

    QWidget* m_window;
    bool m_pressed = false;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
