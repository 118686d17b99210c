#include "UI/Base/Window/ToolbarLine.h"

#include "UI/Base/Window/ToolbarStrip.h"

#include <QEvent>

#include <algorithm>
#include <numeric>
#include <utility>

namespace Vu {
namespace {

void moveTo(QWidget* parent, QWidget* strip)
{
    const bool hidden = strip->isHidden();
    strip->setParent(parent);
    strip->setHidden(hidden);
}

} // namespace

ToolbarLine::ToolbarLine(QWidget* parent) : QFrame(parent)
{
    setObjectName(QStringLiteral("toolbarLine"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void ToolbarLine::add(ToolbarStrip* strip)
{
    m_strips.push_back(strip);
    moveTo(this, strip);
    updateGeometry();
}

void ToolbarLine::release(QWidget* parent)
{
    for (ToolbarStrip* strip : std::exchange(m_strips, {}))
        moveTo(parent, strip);
}

std::vector<ToolbarStrip*> ToolbarLine::shown() const
{
    std::vector<ToolbarStrip*> strips;
    std::ranges::copy_if(m_strips, std::back_inserter(strips),
                         [](const ToolbarStrip* strip) { return !strip->isHidden(); });
    return strips;
}

QSize ToolbarLine::sizeHint() const
{
    QSize size(0, 0);
    for (const ToolbarStrip* strip : shown()) {
        const QSize one = strip->sizeHint();
        size = {size.width() + one.width(), std::max(size.height(), one.height())};
    }
    return size + this->size() - contentsRect().size();
}

QSize ToolbarLine::minimumSizeHint() const
{
    QSize size = sizeHint();
    size.setWidth(0);
    for (const ToolbarStrip* strip : shown())
        size.rwidth() += strip->minimumSizeHint().width();
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

std::vector<int> ToolbarLine::widths(const std::vector<ToolbarStrip*>& strips) const
{
    std::vector<int> widths;
    for (const ToolbarStrip* strip : strips)
        widths.push_back(strip->sizeHint().width());
    int missing = std::accumulate(widths.begin(), widths.end(), -contentsRect().width());
    for (size_t i = strips.size(); i-- > 0 && missing > 0;) {
        const int given = std::clamp(widths[i] - strips[i]->minimumSizeHint().width(), 0, missing);
        widths[i] -= given;
        missing -= given;
    }
    // One that has things at both ends takes what the line has.
    const auto spreads = std::ranges::find_if(strips, &ToolbarStrip::spreads);
    if (missing < 0 && spreads != strips.end())
        widths[static_cast<size_t>(spreads - strips.begin())] -= missing;
    return widths;
}

void ToolbarLine::place()
{
    const std::vector<ToolbarStrip*> strips = shown();
    const std::vector<int> widths = this->widths(strips);
    const QRect room = contentsRect();
    int left = room.left(), rest = std::accumulate(widths.begin(), widths.end(), 0);
    for (size_t i = 0; i < strips.size(); ++i) {
        // From here on at the end of the line.
        if (strips[i]->isAtEnd())
            left = std::max(left, room.left() + room.width() - rest);
        strips[i]->setGeometry(left, room.top(), widths[i], room.height());
        left += widths[i];
        rest -= widths[i];
    }
}

} // namespace Vu
