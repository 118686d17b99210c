#pragma once

#include <QWidget>

namespace Vu {

/// A thin frame within a view that has got the keyboard by a key, so that who works without a mouse sees
/// where it goes. It goes away with the keyboard, and with the first click into the view.
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
