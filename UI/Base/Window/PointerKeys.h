#pragma once

#include "UI/Base/View/MouseEvents.h"

#include <QString>

#include <functional>
#include <optional>

class QKeyEvent;

namespace Vu {

class SelectionCommandInput;

/// Points by keyboard at the things in the active view that the running (or the resting) command lets be
/// picked. Ctrl and an arrow go from the last position of the pointer, or else from the middle, to the
/// nearest other thing in that direction, which is highlighted as under the pointer. Space clicks there, with
/// the modifier keys that a click may have; the Menu key right-clicks there, or in the middle.
class PointerKeys : private MouseEventSite
{
public:
    /// `tell` is told what is pointed at.
    explicit PointerKeys(std::function<void(const QString&)> tell);

    /// Each returns false if the key is another one, or nothing can be picked now. An arrow is a Qt::Key.
    bool point(int arrow);
    bool click(const QKeyEvent& event);

private:
    struct Place
    {
        GraphicsCanvas* canvas; ///< Only compared; it may be gone.
        double x, y;
    };

    void mouseMove(MouseEvent* event) override;
    std::optional<Place> placeIn(GraphicsCanvas& canvas) const;
    std::optional<Place> next(GraphicsCanvas& canvas, const SelectionCommandInput& input, double right,
                              double down) const;
    void go(const Place& place);

    std::function<void(const QString&)> m_tell;
    std::optional<Place> m_last;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
