#pragma once

#include <QWidget>

class QDragEnterEvent;
class QDropEvent;

namespace Vu {

/// Makes the whole window a place on which files can be dropped, and shows it, over everything else, while
/// something hangs over it that can be opened.
class DropTarget : public QWidget
{
public:
    explicit DropTarget(QWidget* window);

    void enter(QDragEnterEvent& event);
    void leave() { hide(); }
    /// Opens what was dropped, behind the event; says of the rest why it isn't.
    void drop(QDropEvent& event);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_text;
};

} // namespace Vu
