#pragma once

#include <QWidget>

class QDragEnterEvent;
class QDropEvent;

namespace Vu {

/// Makes the whole window a drop target for files, and shows so, above everything else, while something that
/// can be opened is dragged over it.
class DropTarget : public QWidget
{
public:
    explicit DropTarget(QWidget* window);

    void enter(QDragEnterEvent& event);
    void leave() { hide(); }
    /// Opens what was dropped, after the event; says why the rest isn't opened.
    void drop(QDropEvent& event);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_text;
};

} // namespace Vu
