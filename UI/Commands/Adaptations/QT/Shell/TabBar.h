#pragma once

#include <QTabBar>

namespace Vu::Commands {

/// A row of tabs that can be dragged, and closed by their buttons, the middle mouse button or the Delete key.
/// A single tab stop: the arrows go from tab to tab. Tabs that don't fit are scrolled to. Their texts are
/// shown literally.
class TabBar : public QTabBar
{
    Q_OBJECT

public:
    explicit TabBar(QWidget* parent);

    /// Adds a tab whose close button has the object name `closeName`.
    void insert(int place, const QString& closeName);
    /// The tab's text; `spoken` is its accessible name.
    void label(int index, const QString& text, const QString& spoken, const QString& tooltip);
    /// Whether all tabs fit at once.
    bool hasRoom(int width) const;

signals:
    void closeWanted(int index);

protected:
    QSize tabSizeHint(int index) const override;
    QSize minimumTabSizeHint(int index) const override;
    /// Repaints, so that a tab that became narrower leaves no remnant beside it.
    void tabLayoutChange() override { update(); }
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    int m_pressed = -1; ///< The tab on which the middle button was pressed.
};

} // namespace Vu::Commands
