#include "UI/Commands/Adaptations/QT/Panels/OverMainWindow.h"

#include "UI/Base/Program/Application.h"

#include <QEvent>
#include <QTimer>
#include <QWindow>

#include <utility>

namespace Vu::Commands {

OverMainWindow::OverMainWindow(QWidget* window) : QObject(window), m_window(window)
{
    window->installEventFilter(this);
}

bool OverMainWindow::eventFilter(QObject* object, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (object == m_window && type == QEvent::Show)
        attach();
    if (object == m_window && type == QEvent::WindowBlocked && m_window->isVisible()) {
        m_gaveWay = true;
        m_window->hide();
    } else if (object == m_window && type == QEvent::WindowUnblocked && std::exchange(m_gaveWay, false)) {
        m_window->show();
    }
    // The first picture that needs OpenGL has the main window's native window recreated.
    const bool covers = type == QEvent::Show || type == QEvent::WinIdChange || type == QEvent::ZOrderChange ||
                        type == QEvent::WindowActivate;
    // Pending work of the main window comes first.
    if (object == m_main && covers && m_window->isVisible())
        QTimer::singleShot(0, m_window, [this] {
            attach();
            m_window->raise();
        });
    return false;
}

void OverMainWindow::attach()
{
    QWidget* const widget = Application::get()->mainWidget();
    QWidget* const main = widget ? widget->window() : nullptr;
    if (main != m_main && m_main)
        m_main->removeEventFilter(this);
    if (main && main != m_main)
        main->installEventFilter(this);
    m_main = main;
    if (main && main->windowHandle() && m_window->windowHandle())
        m_window->windowHandle()->setTransientParent(main->windowHandle());
}

} // namespace Vu::Commands
