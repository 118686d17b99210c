#pragma once

#include "UI/Base/Workspace/ToolbarManager.h"

#include <QFrame>

#include <string>
#include <vector>

class QToolButton;

namespace Vu {

class CommandButton;
class CommandMenu;

/// The toolbars of one area in a row, with separators. What doesn't fit, from the end of the row, goes into
/// the menu of a chevron. A strip with nothing to show is empty and takes no room.
class ToolbarStrip : public QFrame
{
public:
    explicit ToolbarStrip(QWidget* parent);

    /// Shows these, in their order. Buttons of a toolbar with unchanged items are kept. New ones are appended
    /// to `buttons`.
    void toolbars(const std::vector<const Toolbar*>& shown, std::vector<CommandButton*>& buttons);
    bool isEmpty() const { return m_items.empty(); }
    /// Whether everything is at the far end.
    bool isAtEnd() const;
    /// Whether there is something at either end.
    bool spreads() const;
    /// The button for what doesn't fit; hidden while everything does.
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

    std::vector<Item> m_items; ///< Separators have no widget.
    QToolButton* m_chevron;
    CommandMenu* m_hidden; ///< Of the chevron: what doesn't fit.
    std::vector<QRect> m_lines;
};

} // namespace Vu
