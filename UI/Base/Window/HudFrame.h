#pragma once

#include <QWidget>

#include <string>
#include <vector>

namespace Vu {

class CommandButton;

/// A canvas with the heads-up displays that lie over it.
class HudFrame : public QWidget
{
public:
    explicit HudFrame(QWidget* parent);

    /// Fills the frame with the canvas's widget, which stays its own.
    void canvas(QWidget* widget);
    /// Makes the displays; their buttons are appended.
    void addHuds(std::vector<CommandButton*>& buttons);

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

private:
    struct Hud
    {
        QWidget* bar;
        std::wstring placement;
    };
    void place();

    QWidget* m_canvas = nullptr;
    std::vector<Hud> m_huds;
};

} // namespace Vu
