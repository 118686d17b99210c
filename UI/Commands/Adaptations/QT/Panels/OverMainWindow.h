#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace Vu::Commands {

/// Keeps a window without a parent above the main window: as its transient, so that a window manager treats
/// both as one, and by raising it again where there is no window manager. It is hidden while a dialog, which
/// it would cover, waits for an answer. Owned by the window.
class OverMainWindow : public QObject
{
public:
    explicit OverMainWindow(QWidget* window);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void attach();

    QWidget* m_window;
    QPointer<QWidget> m_main;
    bool m_gaveWay = false;
};

} // namespace Vu::Commands
