#include "UI/Base/Window/ToolbarLine.h"

#include "UI/Base/Window/ToolbarStrip.h"

#include <QEvent>

#include <algorithm>
#include <numeric>
#include <utility>

namespace Vu {
namespace {

void moveTo(QWidget* parent, QWidget* part)
{
    const bool hidden = part->isHidden();
    part->setParent(parent);
    part->setHidden(hidden);
}

bool isAtEnd(const QWidget* part)
{
    const auto* strip = dynamic_cast<const ToolbarStrip*>(part);
    return !strip || strip->isAtEnd();
}

/// A strip with items at both ends takes the remaining width.
bool spreads(const QWidget* part)
{
    const auto* strip = dynamic_cast<const ToolbarStrip*>(part);
    return strip && strip->spreads();
}

QSize least(const QWidget* part)
{
    return part->minimumSizeHint().expandedTo(part->minimumSize());
}

QSize wanted(const QWidget* part)
{
    return part->sizeHint().expandedTo(part->minimumSize()).boundedTo(part->maximumSize());
}

} // namespace

ToolbarLine::ToolbarLine(QWidget* parent) : QFrame(parent)
{
    setObjectName(QStringLiteral("toolbarLine"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void ToolbarLine::add(QWidget* widget)
{
    m_parts.push_back(widget);
    moveTo(this, widget);
    updateGeometry();
}

void ToolbarLine::release(QWidget* parent)
{
    for (QWidget* part : std::exchange(m_parts, {}))
        moveTo(parent, part);
}

std::vector<QWidget*> ToolbarLine::shown() const
{
    std::vector<QWidget*> parts;
    std::ranges::copy_if(m_parts, std::back_inserter(parts),
                         [](const QWidget* part) { return !part->isHidden(); });
    return parts;
}

QSize ToolbarLine::sizeHint() const
{
    QSize size(0, 0);
    for (const QWidget* part : shown()) {
        const QSize one = wanted(part);
        size = {size.width() + one.width(), std::max(size.height(), one.height())};
    }
    return size + this->size() - contentsRect().size();
}

QSize ToolbarLine::minimumSizeHint() const
{
    QSize size = sizeHint();
    size.setWidth(0);
    for (const QWidget* part : shown())
        size.rwidth() += least(part).width();
    return size;
}

void ToolbarLine::resizeEvent(QResizeEvent*)
{
    place();
}

bool ToolbarLine::event(QEvent* event)
{
    if (event->type() == QEvent::LayoutRequest) {
        updateGeometry();
        place();
    }
    return QFrame::event(event);
}

std::vector<int> ToolbarLine::widths(const std::vector<QWidget*>& parts) const
{
    std::vector<int> widths;
    for (const QWidget* part : parts)
        widths.push_back(wanted(part).width());
    int missing = std::accumulate(widths.begin(), widths.end(), -contentsRect().width());
    for (size_t i = parts.size(); i-- > 0 && missing > 0;) {
        const int given = std::clamp(widths[i] - least(parts[i]).width(), 0, missing);
        widths[i] -= given;
        missing -= given;
    }
    const auto taker = std::ranges::find_if(parts, spreads);
    if (missing < 0 && taker != parts.end())
        widths[static_cast<size_t>(taker - parts.begin())] -= missing;
    return widths;
}

void ToolbarLine::place()
{
    const std::vector<QWidget*> parts = shown();
    const std::vector<int> widths = this->widths(parts);
    const QRect room = contentsRect();
    int left = room.left(), rest = std::accumulate(widths.begin(), widths.end(), 0);
    for (size_t i = 0; i < parts.size(); ++i) {
        // From here on, at the end of the line.
        if (isAtEnd(parts[i]))
            left = std::max(left, room.left() + room.width() - rest);
        parts[i]->setGeometry(left, room.top(), widths[i], room.height());
        left += widths[i];
        rest -= widths[i];
    }
}

} // namespace Vu
