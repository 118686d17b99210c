#pragma once

#include <QTabBar>

namespace Vu::Commands {

/// A row of tabs that can be dragged, and closed by their buttons, the middle button of the mouse or the
/// Delete key. One stop of the Tab key: the arrows go from tab to tab. Tabs for which there is no room are
/// scrolled to. Their texts are shown letter by letter.
class TabBar : public QTabBar
{
    Q_OBJECT

public:
    explicit TabBar(QWidget* parent);

    /// Adds a tab, whose button is called `closeName`.
    void insert(int place, const QString& closeName);
    /// What the tab shows; `spoken` is its accessible name.
    void label(int index, const QString& text, const QString& spoken, const QString& tooltip);
    /// Whether all tabs have room at once.
    bool hasRoom(int width) const;

signals:
    void closeWanted(int index);

protected:
    QSize tabSizeHint(int index) const override;
    QSize minimumTabSizeHint(int index) const override;
    /// A tab that became narrower leaves no rest of itself beside it.
    void tabLayoutChange() override { update(); }
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    int m_pressed = -1; ///< The tab on which the middle button went down.
};

} // namespace Vu::Commands
