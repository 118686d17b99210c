#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace Vu::Commands {

/// Keeps a window that has no parent over the main window: as its transient, so that a window manager treats
/// both as one, and by raising it again where there is no window manager. While a dialog waits for an answer,
/// which it would cover, it isn't there. Owned by the window.
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
