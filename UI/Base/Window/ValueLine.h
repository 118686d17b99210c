#pragma once

#include <QLineEdit>

#include <functional>

namespace Vu {

/// A line of the properties panel that shows a value and lets it be edited: Enter or leaving the line applies
/// what was typed, Escape discards it. Invalid text stays there, marked, with the reason as its tooltip.
class ValueLine : public QLineEdit
{
public:
    /// Returns what is wrong with the text; empty if it was accepted.
    using Enter = std::function<QString(const QString& text)>;

    ValueLine(const char* name, const QString& title, Enter enter, QWidget* parent);

    /// Text being typed is left alone.
    void value(const QString& text, const QString& placeholder);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void enter();
    void failed(const QString& why);

    QString m_title;
    QString m_value; ///< As last set.
    Enter m_enter;
};

} // namespace Vu
