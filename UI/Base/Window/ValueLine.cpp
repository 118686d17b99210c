#include "UI/Base/Window/ValueLine.h"

#include "UI/Base/Window/PlainText.h"

#include <QKeyEvent>
#include <QStyle>

namespace Vu {

ValueLine::ValueLine(const char* name, const QString& title, Enter enter, QWidget* parent)
    : QLineEdit(parent), m_title(title), m_enter(std::move(enter))
{
    setObjectName(QLatin1String(name));
    setAccessibleName(title);
}

void ValueLine::value(const QString& text, const QString& placeholder)
{
    const bool isTyped = isModified() && hasFocus();
    m_value = text;
    setPlaceholderText(placeholder);
    if (isTyped)
        return;
    failed({});
    if (QLineEdit::text() != text) {
        setText(text);
        setCursorPosition(0);
    }
    setModified(false);
}

void ValueLine::failed(const QString& why)
{
    if (property("failed").toBool() == why.isEmpty()) {
        setProperty("failed", !why.isEmpty());
        style()->unpolish(this);
        style()->polish(this);
    }
    PlainText::setTooltip(this, why.isEmpty() ? m_title : why);
    setAccessibleDescription(why);
}

void ValueLine::enter()
{
    if (!isModified() || text() == m_value)
        return;
    const QString why = m_enter(text());
    failed(why);
    if (why.isEmpty())
        setModified(false);
}

void ValueLine::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        enter();
        selectAll();
    } else if (event->key() == Qt::Key_Escape && isModified()) {
        setModified(false);
        value(m_value, placeholderText());
        selectAll();
    } else {
        QLineEdit::keyPressEvent(event);
    }
}

void ValueLine::focusOutEvent(QFocusEvent* event)
{
    // A menu above the line, or another window, doesn't mean that the user is finished.
    if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason) {
        enter();
        if (isModified()) {
            setModified(false);
            value(m_value, placeholderText());
        }
    }
    QLineEdit::focusOutEvent(event);
}

} // namespace Vu
