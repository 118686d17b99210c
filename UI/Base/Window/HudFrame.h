#pragma once

#include "UI/Base/View/SplitViewEvents.h"
#include "UI/Base/Window/PlacedHuds.h"
#include "UI/Base/Workspace/Area.h"

#include <QPointer>
#include <QWidget>

#include <string>
#include <vector>

namespace Vu {

class CommandButton;
class GraphicsCanvas;

/// A canvas with the heads-up displays over it. Of several canvases the active one has a frame in the
/// selection colour, and only it shows the displays, which work on it.
class HudFrame : public QWidget, private SplitViewEventSite
{
public:
    explicit HudFrame(QWidget* parent);
    ~HudFrame() override;

    /// Fills the frame with the canvas's widget, which the canvas still owns.
    void canvas(GraphicsCanvas* canvas);
    /// Creates the displays and appends their buttons.
    void addHuds(std::vector<CommandButton*>& buttons);
    /// Shows, hides and places the displays as described by those areas below `root` that are meant for them
    /// (HUD::contents). The coordinates of areas are those of `stage`.
    void follow(Area& root, const QWidget& stage);

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
        EPlacement usual;     ///< The side that the display itself asks for.
        std::string contents; ///< Of its area.
        EPlacement side;
        QPoint point; ///< Of a floating one.
        bool shown;
    };
    QRect placeOf(const Hud& hud) const;
    void place();

    GraphicsCanvas* m_canvas = nullptr;
    QPointer<QWidget>
        m_widget; ///< The canvas's own, which may be destroyed, or move to another frame, before this.
    std::vector<Hud> m_huds;
    PlacedHuds m_placed{this};
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
