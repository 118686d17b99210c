#pragma once

#include <QFrame>
#include <QPointer>

namespace Vu {

/// The window's shortcuts in a table over it. Any key or click closes it.
class KeysOverlay : public QFrame
{
public:
    /// Opens it, or closes the open one.
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
    QPointer<QWidget> m_before; ///< Which had the focus.
};

} // namespace Vu
