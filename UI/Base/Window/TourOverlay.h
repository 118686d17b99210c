#pragma once

#include "UI/Base/Program/Tour.h"

#include <QWidget>

#include <vector>

class QFrame;
class QLabel;
class QPushButton;

namespace Vu {

/// A tour through the parts of a window: highlights the area of the present step, dims the rest, and explains
/// it in a card beside it. Covers the whole window, takes mouse and keyboard, and deletes itself at the end.
/// Steps whose area isn't shown are skipped.
class TourOverlay : public QWidget
{
public:
    /// Null if none of the areas is shown.
    static TourOverlay* show(QWidget* window, const std::vector<TourStep>& steps);

    /// Finds the widget of an area.
    static void markArea(QWidget* widget, const std::string& contents);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool) override { return true; }

private:
    TourOverlay(QWidget* window, const std::vector<TourStep>& steps);

    QWidget* areaOf(size_t step) const;
    /// The next step in that direction whose area is shown; the number of steps if there is none.
    size_t shownFrom(size_t step, bool forwards) const;
    void go(bool forwards);
    void refresh();
    QRect lit() const;

    std::vector<TourStep> m_steps;
    size_t m_step = 0;
    QFrame* m_card;
    QLabel* m_title;
    QLabel* m_text;
    QLabel* m_count;
    QPushButton* m_back;
    QPushButton* m_next;
};

} // namespace Vu
