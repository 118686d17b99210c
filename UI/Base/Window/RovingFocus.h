#pragma once

#include <QObject>
#include <QPointer>

class QAbstractButton;
class QWidget;

namespace Vu {

/// Makes a bar of buttons a single tab stop: within it, the arrows, Home and End move from button to button,
/// and the next Tab leaves it. Clicking a button doesn't take the focus.
class RovingFocus : public QObject
{
public:
    /// For the buttons that the bar has now and gets later. Owned by the bar.
    explicit RovingFocus(QWidget* bar);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void adopt(QAbstractButton* button);
    QList<QAbstractButton*> stops() const;
    bool step(QAbstractButton* from, int key);
    void enter();
    void leave(bool next);

    QWidget* m_bar;
    QPointer<QAbstractButton> m_last; ///< Which had the focus last.
};

} // namespace Vu
