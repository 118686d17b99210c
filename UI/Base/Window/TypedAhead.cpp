#include "UI/Base/Window/TypedAhead.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QWindow>

namespace Vu {
namespace {

QWidget* widgetOf(const QObject* window)
{
    const auto* native = qobject_cast<const QWindow*>(window);
    return native && native->handle() ? QWidget::find(native->winId()) : nullptr;
}

} // namespace

TypedAhead::Hold::Hold()
{
    static QPointer<TypedAhead> made;
    if (!made)
        made = new TypedAhead(qApp);
    m_typed = made;
    ++m_typed->m_held;
}

TypedAhead::Hold::~Hold()
{
    if (m_typed && --m_typed->m_held == 0 && !m_typed->m_keys.empty())
        m_typed->m_soon.start(0);
}

TypedAhead::TypedAhead(QObject* parent) : QObject(parent)
{
    m_soon.setSingleShot(true);
    connect(&m_soon, &QTimer::timeout, this, [this] { send(); });
    qApp->installEventFilter(this);
}

bool TypedAhead::goesIntoField(const QObject* window)
{
    const QWidget* widget = widgetOf(window);
    return widget && qobject_cast<const QLineEdit*>(widget->focusWidget());
}

bool TypedAhead::eventFilter(QObject* object, QEvent* event)
{
    // Events reach the native window first, which passes them on to whatever has the focus.
    if (event->type() != QEvent::KeyPress || event == m_sent || !object->isWindowType())
        return false;
    const bool waits = m_held > 0 || m_sent || !m_keys.empty();
    // Escape is for whoever runs the work, and questions asked while it runs have to be answered.
    if (!waits || static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape ||
        QApplication::activeModalWidget() || QApplication::activePopupWidget() || !goesIntoField(object))
        return false;
    // The widget gets it, whatever has the focus in the end.
    m_keys.push_back({widgetOf(object), std::unique_ptr<QEvent>(event->clone())});
    return true;
}

void TypedAhead::send()
{
    // One of them may start work, which holds back the others.
    if (m_sent)
        return;
    while (!m_keys.empty() && m_held == 0) {
        const Key key = std::move(m_keys.front());
        m_keys.pop_front();
        m_sent = key.event.get();
        if (key.window && key.window->windowHandle())
            QCoreApplication::sendEvent(key.window->windowHandle(), key.event.get());
        m_sent = nullptr;
    }
}

} // namespace Vu
