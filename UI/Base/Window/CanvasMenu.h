#pragma once

#include "Server/Base/Point2.h"
#include "UI/Base/View/MouseEvents.h"

#include <QWidget>

namespace Vu {

/// Opens the context menus of the canvases in one window: on a right click (a right drag moves the camera)
/// while the user has no tool active. What is clicked is selected first, unless it is already. The menu is
/// that of the selection, as the menu files describe it (MenuBar::context): "OnPart", "OnFace" or "OnEdge";
/// beside everything it is "OnNothing". The commands that offer themselves follow. Other things at the same
/// place, such as an edge of the part or the part of an edge, get submenus of their own. On the orbicon it is
/// "OnCube".
class CanvasMenu : public QObject, private MouseEventSite
{
public:
    /// The name under which its menus are found.
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
