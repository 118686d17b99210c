#include "UI/Base/Window/ToolbarStrip.h"

#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Window/Accessible.h"
#include "UI/Base/Window/CommandButton.h"
#include "UI/Base/Window/CommandMenu.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"

#include <QEvent>
#include <QPainter>
#include <QToolButton>

#include <algorithm>
#include <utility>

namespace Vu {
namespace {

constexpr int kSpacing = 2;
/// With the separator in its middle.
constexpr int kGap = 7;
constexpr int kMarginAbove = kMargin / 2;
constexpr char16_t kChevron[] = u"\u00bb";

} // namespace

ToolbarStrip::ToolbarStrip(QWidget* parent)
    : QFrame(parent), m_chevron(new QToolButton(this)), m_hidden(new CommandMenu({}, m_chevron))
{
    Accessible::role(this, QAccessible::ToolBar);
    setObjectName(QStringLiteral("strip"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setAccessibleName(QString::fromStdWString(localized("AreaToolbar", "Toolbar")));
    m_chevron->setObjectName(QStringLiteral("chevron"));
    m_chevron->setProperty("flat", true);
    m_chevron->setAutoRaise(true);
    m_chevron->setText(QString::fromUtf16(kChevron));
    m_chevron->setPopupMode(QToolButton::InstantPopup);
    m_chevron->setFocusPolicy(Qt::NoFocus);
    m_chevron->setAccessibleName(QString::fromStdWString(localized("MoreTools", "More tools")));
    PlainText::setTooltip(m_chevron, m_chevron->accessibleName());
    m_chevron->setMenu(m_hidden);
    m_chevron->hide();
}

void ToolbarStrip::toolbars(const std::vector<const Toolbar*>& shown, std::vector<CommandButton*>& buttons)
{
    std::vector<Item> before = std::exchange(m_items, {});
    for (const bool atEnd : {false, true})
        for (const Toolbar* toolbar : shown) {
            if (toolbar->atEnd != atEnd)
                continue;
            bool begins = true;
            for (const ToolbarItem& item : toolbar->items) {
                QToolButton* widget = nullptr;
                CommandButton* button = nullptr;
                const auto kept = std::find_if(before.begin(), before.end(), [&](const Item& each) {
                    return each.widget && each.item == item;
                });
                const size_t known = buttons.size();
                if (kept != before.end()) {
                    widget = std::exchange(kept->widget, nullptr);
                    button = kept->button;
                } else {
                    widget = makeToolbarItem(item, this, buttons);
                    if (widget && buttons.size() > known)
                        button = buttons.back();
                }
                if (!widget && !item.separator())
                    continue; // No such command is registered.
                m_items.push_back({item, widget, button, atEnd, begins});
                begins = false;
            }
        }
    for (const Item& gone : before)
        if (gone.widget) {
            gone.widget->hide();
            gone.widget->deleteLater();
        }
    updateGeometry();
    place();
}

bool ToolbarStrip::Item::isWanted() const
{
    return widget && (!button || button->isWanted());
}

void ToolbarStrip::Item::show(bool fitsNow)
{
    fits = fitsNow;
    if (button)
        button->fits(fits);
    else if (widget)
        widget->setVisible(fits);
}

bool ToolbarStrip::isAtEnd() const
{
    return !isEmpty() &&
           std::all_of(m_items.begin(), m_items.end(), [](const Item& item) { return item.atEnd; });
}

bool ToolbarStrip::spreads() const
{
    return !isAtEnd() &&
           std::any_of(m_items.begin(), m_items.end(), [](const Item& item) { return item.atEnd; });
}

/// What would be shown if there were room; separators only between two items.
std::vector<size_t> ToolbarStrip::wanted() const
{
    std::vector<size_t> shown;
    for (size_t i = 0; i < m_items.size(); ++i)
        if (m_items[i].isWanted())
            shown.push_back(i);
    return shown;
}

namespace {

/// Whether there is a separator before the item `next`, which follows `last`.
template <class Items>
bool lineBetween(const Items& items, size_t last, size_t next)
{
    for (size_t i = last + 1; i <= next; ++i)
        if (items[i].beginsToolbar || !items[i].widget)
            return true;
    return false;
}

} // namespace

int ToolbarStrip::widthOf(const std::vector<size_t>& items) const
{
    int width = 0;
    for (size_t i = 0; i < items.size(); ++i) {
        if (i > 0)
            width += lineBetween(m_items, items[i - 1], items[i]) ? kGap : kSpacing;
        width += m_items[items[i]].widget->sizeHint().width();
    }
    return width;
}

QSize ToolbarStrip::sizeHint() const
{
    int height = 0;
    for (const Item& item : m_items)
        if (item.widget)
            height = std::max(height, item.widget->sizeHint().height());
    return {widthOf(wanted()) + 2 * kMargin, height + 2 * kMarginAbove + 1};
}

QSize ToolbarStrip::minimumSizeHint() const
{
    const QSize whole = sizeHint();
    if (isAtEnd())
        return whole;
    return {std::min(whole.width(), m_chevron->sizeHint().width() + 2 * kMargin), whole.height()};
}

void ToolbarStrip::resizeEvent(QResizeEvent*)
{
    place();
}

bool ToolbarStrip::event(QEvent* event)
{
    // Buttons that come and go change what fits.
    if (event->type() == QEvent::LayoutRequest) {
        updateGeometry();
        place();
    }
    return QFrame::event(event);
}

void ToolbarStrip::put(const std::vector<size_t>& items, int x, std::vector<QRect>& lines)
{
    for (size_t i = 0; i < items.size(); ++i) {
        if (i > 0) {
            const bool line = lineBetween(m_items, items[i - 1], items[i]);
            if (line)
                lines.emplace_back(x + kGap / 2, (height() - kIconSize) / 2, 1, kIconSize);
            x += line ? kGap : kSpacing;
        }
        QWidget* widget = m_items[items[i]].widget;
        const QSize size = widget->sizeHint();
        widget->setGeometry(x, (height() - 1 - size.height()) / 2, size.width(), size.height());
        x += size.width();
    }
}

void ToolbarStrip::place()
{
    std::vector<size_t> begin, end;
    for (const size_t i : wanted())
        (m_items[i].atEnd ? end : begin).push_back(i);
    const int room = width() - 2 * kMargin;
    const auto needed = [&] {
        return widthOf(begin) + (begin.empty() || end.empty() ? 0 : kGap) + widthOf(end);
    };
    const bool all = needed() <= room;
    const int chevron = all ? 0 : m_chevron->sizeHint().width() + kSpacing;
    while (!all && !(begin.empty() && end.empty()) && needed() + chevron > room)
        (begin.empty() ? end : begin).pop_back();
    for (size_t i = 0; i < m_items.size(); ++i) {
        Item& item = m_items[i];
        const auto shows = [i](const std::vector<size_t>& some) {
            return std::find(some.begin(), some.end(), i) != some.end();
        };
        item.show(!item.isWanted() || shows(begin) || shows(end));
    }
    std::vector<QRect> lines;
    put(begin, kMargin, lines);
    put(end, width() - kMargin - widthOf(end), lines);
    m_chevron->setVisible(!all);
    if (!all) {
        m_hidden->items(hiddenItems());
        const QSize size = m_chevron->sizeHint();
        m_chevron->setGeometry(kMargin + widthOf(begin) + (begin.empty() ? 0 : kSpacing),
                               (height() - size.height()) / 2, size.width(), size.height());
    }
    m_lines = std::move(lines);
    update();
}

std::vector<ToolbarItem> ToolbarStrip::hiddenItems() const
{
    std::vector<ToolbarItem> items;
    for (const Item& item : m_items) {
        if (item.beginsToolbar && !items.empty() && !items.back().separator())
            items.emplace_back();
        if (!item.widget && !items.empty())
            items.emplace_back();
        else if (item.widget && !item.fits)
            items.push_back(item.item);
    }
    return items;
}

void ToolbarStrip::paintEvent(QPaintEvent* event)
{
    QFrame::paintEvent(event);
    QPainter painter(this);
    for (const QRect& line : m_lines)
        painter.fillRect(line, palette().mid());
}

} // namespace Vu
