#pragma once

#include <QFrame>
#include <QPointer>

namespace Vu {

/// The keys of the window in a table over it. Any key or click closes it.
class KeysOverlay : public QFrame
{
public:
    /// Shows it, or takes the one that shows away.
    static void toggle(QWidget* window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool focusNextPrevChild(bool) override { return true; }

private:
    explicit KeysOverlay(QWidget* window);
    void place();
    void leave();

    QWidget* m_page;            ///< With the tables.
    QPointer<QWidget> m_before; ///< Which had the keyboard.
};

} // namespace Vu
