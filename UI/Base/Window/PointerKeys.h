#pragma once

#include "UI/Base/View/MouseEvents.h"

#include <QString>

#include <functional>
#include <optional>

class QKeyEvent;

namespace Vu {

class SelectionCommandInput;

/// Points by keys at the things in the active view that the running command, or the one that rests, lets
/// be picked. Ctrl and an arrow go from where the pointer was last, else from the middle, to the nearest
/// other thing in that direction, which lights up as it does under the pointer. Space is a click there, with
/// the modifier keys that a click may have; the Menu key is one of the right button, there or in the middle.
class PointerKeys : private MouseEventSite
{
public:
    /// What is pointed at is told to `tell`.
    explicit PointerKeys(std::function<void(const QString&)> tell);

    /// Each returns false if the key is another one, or nothing can be picked now. An arrow is a Qt::Key.
    bool point(int arrow);
    bool click(const QKeyEvent& event);

private:
    struct Place
    {
        GraphicsCanvas* canvas; ///< Compared alone; it may be gone.
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
