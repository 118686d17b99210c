#pragma once

#include <QFrame>
#include <QPoint>
#include <QString>

class QLabel;
class QToolButton;
class QSizeGrip;
class QVBoxLayout;

namespace Vu {

class Area;

/// The user's name for an area; its internal name if there is no better one.
[[nodiscard]] QString areaTitle(const Area& area);

/// Whether the area is shown in a panel of its own.
[[nodiscard]] bool hasPanel(const Area& area);

/// A panel: the contents of an area below a title bar, with a menu that docks, floats or collapses it, and a
/// button that closes it. A floating panel is dragged by its title and has a resize corner. Closing runs the
/// command that hides the area, if there is one.
class PanelFrame : public QFrame
{
public:
    explicit PanelFrame(QWidget* parent);

    /// Takes ownership of the contents.
    void contents(QWidget* widget);
    QWidget* contents() const { return m_contents; }
    /// The area of this panel; it must live as long as the panel is shown.
    void area(Area* area);
    /// Whether it floats above the others.
    void floats(bool value);
    QToolButton* menuButton() const { return m_menu; }
    QToolButton* closeButton() const { return m_close; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QToolButton* headButton(const char* name, QWidget* head);
    void fillMenu();
    void close();
    void drag(const QPoint& to);

    Area* m_area = nullptr;
    QWidget* m_head;
    QLabel* m_title;
    QToolButton* m_menu;
    QToolButton* m_close;
    QVBoxLayout* m_column;
    QSizeGrip* m_grip;
    QWidget* m_contents = nullptr;
    QPoint m_grabbed;
    bool m_floats = false;
    bool m_dragging = false;
};

} // namespace Vu
