#pragma once

#include "UI/Base/Workspace/HUDManager.h"

#include <QPoint>
#include <QTimer>

#include <map>
#include <string>

class QFrame;
class QLabel;
class QWidget;

namespace Vu {

/// Draws the contents of HUDManager over the canvas of one frame: plates with the values of inputs, and the
/// hint. Several changes are drawn together, at the end of the event.
class PlacedHuds : private HUDEventSite
{
public:
    /// The frame owns the widgets and outlives this.
    explicit PlacedHuds(QWidget* frame);

    /// Whether the frame's canvas is the active one, and where in the frame it begins.
    void canvas(bool active, const QPoint& corner);

private:
    void hudsChanged() override { m_soon.start(0); }
    void refresh();
    QFrame* plateOf(const PlacedHUD& hud);
    void keepOffPanel(QWidget& plate) const;
    void showHint();
    void put(QWidget* widget, const Vs::Point2& place);

    QWidget* m_frame;
    QLabel* m_hint;
    std::map<std::wstring, QFrame*> m_plates;
    QTimer m_soon;
    QPoint m_corner;
    bool m_active = false;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
