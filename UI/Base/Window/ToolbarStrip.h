#pragma once

#include "UI/Base/Workspace/ToolbarManager.h"

#include <QFrame>

#include <string>
#include <vector>

class QToolButton;

namespace Vu {

class CommandButton;
class CommandMenu;

/// The toolbars of one area in a row, with lines between. What the width has no room for, from the end of the
/// row, stands in the menu of a chevron. A strip on which nothing is to be shown is empty, and takes no room.
class ToolbarStrip : public QFrame
{
public:
    explicit ToolbarStrip(QWidget* parent);

    /// Shows these, in their order. Buttons of a toolbar whose items are the same as before stay. Those that
    /// are new are appended to `buttons`.
    void toolbars(const std::vector<const Toolbar*>& shown, std::vector<CommandButton*>& buttons);
    bool isEmpty() const { return m_items.empty(); }
    /// Whether everything stands at the far end.
    bool isAtEnd() const;
    /// Whether something stands at either end.
    bool spreads() const;
    /// The button of what has no room; hidden while everything has.
    QToolButton* chevron() const { return m_chevron; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

private:
    struct Item
    {
        ToolbarItem item;
        QToolButton* widget;
        CommandButton* button; ///< The widget, if it is that of a command.
        bool atEnd;
        bool beginsToolbar;
        bool fits = true;

        bool isWanted() const;
        void show(bool fitsNow);
    };

    int widthOf(const std::vector<size_t>& items) const;
    std::vector<size_t> wanted() const;
    void place();
    void put(const std::vector<size_t>& items, int x, std::vector<QRect>& lines);
    std::vector<ToolbarItem> hiddenItems() const;
    void paintEvent(QPaintEvent* event) override;

    std::vector<Item> m_items; ///< Lines between them have no widget.
    QToolButton* m_chevron;
    CommandMenu* m_hidden; ///< Of the chevron: what doesn't fit.
    std::vector<QRect> m_lines;
};

} // namespace Vu
