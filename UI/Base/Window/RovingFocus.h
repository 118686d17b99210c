#pragma once

#include <QObject>
#include <QPointer>

class QAbstractButton;
class QWidget;

namespace Vu {

/// Makes a bar of buttons one stop of the Tab key: within it, the arrows, Home and End go from button to
/// button, and it is left by the next Tab. A click on a button takes the keyboard from nobody.
class RovingFocus : public QObject
{
public:
    /// For the buttons that the bar has and gets. It belongs to the bar.
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
    QPointer<QAbstractButton> m_last; ///< Which had the keyboard last.
};

} // namespace Vu
