#pragma once

#include <QWidget>

namespace Vu {

/// A thin frame in a view that got the keyboard focus by a key, so that a user without a mouse sees where it
/// is. It disappears with the focus, and with the first click into the view.
class FocusFrame : public QWidget
{
public:
    /// Belongs to the view and lets all its events through.
    explicit FocusFrame(QWidget* view);

protected:
    bool eventFilter(QObject* view, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void cover();
};

} // namespace Vu
