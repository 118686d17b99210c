#include "UI/Base/Window/AreaFrame.h"

#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Window/ToolbarLine.h"
#include "UI/Base/Window/ToolbarStrip.h"

#include <QBoxLayout>
#include <QFrame>
#include <QSplitter>

#include <algorithm>
#include <utility>

namespace Vu {
namespace {

constexpr int kUsualExtent = 260;
constexpr int kUsualHeight = 180;
/// The width that panels leave for the views between them, at the expense of their own.
constexpr int kLeastBetween = 300;

/// Its handles have a name.
class Splitter : public QSplitter
{
public:
    using QSplitter::QSplitter;

protected:
    QSplitterHandle* createHandle() override
    {
        QSplitterHandle* handle = QSplitter::createHandle();
        handle->setAccessibleName(QString::fromStdWString(localized("SplitHandle", "Divider")));
        return handle;
    }
};

QSplitter* makeSplitter(Qt::Orientation orientation, QWidget* parent)
{
    auto* splitter = new Splitter(orientation, parent);
    splitter->setChildrenCollapsible(false);
    return splitter;
}

/// Puts the widget into the splitter at that index, unless it is there already.
void seat(QSplitter* splitter, int place, QWidget* widget, bool fills)
{
    if (splitter->widget(place) != widget) {
        const bool hidden = widget->isHidden();
        splitter->insertWidget(place, widget);
        widget->setHidden(hidden);
    }
    splitter->setStretchFactor(place, fills ? 1 : 0);
}

} // namespace

AreaFrame::AreaFrame(bool shares, Resized resized, QWidget* parent)
    : QWidget(parent),
      m_shares(shares),
      m_resized(std::move(resized)),
      m_column(new QVBoxLayout(this)),
      m_rows(makeSplitter(Qt::Vertical, this)),
      m_row(makeSplitter(Qt::Horizontal, m_rows))
{
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->setSpacing(0);
    m_column->addWidget(m_rows, 1);
    m_rows->addWidget(m_row);
    connect(m_row, &QSplitter::splitterMoved, this, [this] { tell(m_row, false); });
    connect(m_rows, &QSplitter::splitterMoved, this, [this] { tell(m_rows, true); });
}

void AreaFrame::tell(QSplitter* splitter, bool upright) const
{
    const QList<int> sizes = splitter->sizes();
    for (const Seat& seat : m_seats) {
        const qsizetype place = splitter->indexOf(seat.place.widget);
        if (place < 0 || seat.side == EPlacement::Fill || (upright && m_shares))
            continue;
        if (!seat.place.widget->isHidden())
            m_resized(*seat.place.area, sizes[place]);
    }
}

/// Those at that side, in the order of their points.
std::vector<AreaFrame::Seat> AreaFrame::at(EPlacement side, bool bars) const
{
    std::vector<Seat> found;
    for (const Seat& seat : m_seats) {
        const bool upright = seat.side == EPlacement::Top || seat.side == EPlacement::Bottom;
        if (seat.side == side && bars == (upright && seat.place.isBar && !m_shares))
            found.push_back(seat);
    }
    std::stable_sort(found.begin(), found.end(), [side](const Seat& a, const Seat& b) {
        const bool upright = side == EPlacement::Top || side == EPlacement::Bottom;
        return upright ? a.point.y < b.point.y : a.point.x < b.point.x;
    });
    return found;
}

void AreaFrame::arrange(const std::vector<Place>& places)
{
    std::vector<Seat> seats;
    for (const Place& place : places)
        if (place.area->placement() != EPlacement::Floating)
            seats.push_back({place, place.area->placement(), place.area->point()});
    // A widget shared by all layouts may have been elsewhere meanwhile, and have returned to this parent
    // but not to its place.
    const bool inPlace = std::all_of(seats.begin(), seats.end(), [this](const Seat& seat) {
        QWidget* widget = seat.place.widget;
        return isAncestorOf(widget) && (widget->parentWidget() != this || m_column->indexOf(widget) >= 0);
    });
    if (seats == m_seats && inPlace)
        return;
    m_seats = std::move(seats);
    while (QLayoutItem* item = m_column->takeAt(0))
        delete item;
    for (ToolbarLine* line : std::exchange(m_lines, {})) {
        line->release(this);
        delete line;
    }
    addBars(EPlacement::Top);
    m_column->addWidget(m_rows, 1);
    addBars(EPlacement::Bottom);
    fillRow();
    fillRows();
}

void AreaFrame::addBars(EPlacement side)
{
    ToolbarLine* line = nullptr;
    for (const Seat& seat : at(side, true)) {
        if (!seat.place.isStrip) {
            line = nullptr;
            m_column->addWidget(seat.place.widget);
            continue;
        }
        if (!line) {
            line = new ToolbarLine(this);
            m_column->addWidget(line);
            m_lines.push_back(line);
            line->show();
        }
        line->add(seat.place.widget);
    }
}

std::vector<AreaFrame::Seat> AreaFrame::row() const
{
    std::vector<Seat> row = at(EPlacement::Left, false);
    for (const EPlacement side : {EPlacement::Fill, EPlacement::Right})
        for (const Seat& seat : at(side, false))
            row.push_back(seat);
    return row;
}

void AreaFrame::fillRow()
{
    const std::vector<Seat> row = this->row();
    const auto fills = [](const Seat& one) { return one.side == EPlacement::Fill; };
    const auto filling = std::ranges::count_if(row, fills);
    const bool hasPanels = filling < std::ssize(row);
    for (size_t i = 0; i < row.size(); ++i) {
        seat(m_row, static_cast<int>(i), row[i].place.widget, fills(row[i]));
        if (fills(row[i]))
            row[i].place.widget->setMinimumWidth(hasPanels ? kLeastBetween / static_cast<int>(filling) : 0);
    }
    divideRow(row);
}

void AreaFrame::divideRow(const std::vector<Seat>& row)
{
    QList<int> sizes;
    int taken = 0;
    for (const Seat& one : row) {
        const bool fills = one.side == EPlacement::Fill;
        const int wished = one.place.area->extent() > 0 ? one.place.area->extent() : kUsualExtent;
        sizes << (fills ? 0 : wished);
        taken += fills || one.place.widget->isHidden() ? 0 : wished;
    }
    // Those that fill share the remaining width evenly; a splitter scales its sizes to its own width.
    const int filling = static_cast<int>(sizes.count(0));
    const int plenty = width() > taken + kUsualExtent ? width() : window()->width();
    for (int& size : sizes)
        if (size == 0)
            size = std::max(kUsualExtent, (plenty - taken) / filling);
    m_row->setSizes(sizes);
}

// A panel that had to shrink gets its width back as soon as there is room. If several views fill, the user
// may have divided them differently.
void AreaFrame::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    const std::vector<Seat> row = this->row();
    if (row.size() > 1 &&
        std::ranges::count_if(row, [](const Seat& one) { return one.side == EPlacement::Fill; }) == 1)
        divideRow(row);
}

void AreaFrame::fillRows()
{
    std::vector<Seat> above = at(EPlacement::Top, false);
    const std::vector<Seat> below = at(EPlacement::Bottom, false);
    int place = 0;
    QList<int> sizes;
    const auto height = [this](const Seat& one) {
        const int extent = one.place.area->extent();
        return m_shares ? kUsualExtent : extent > 0 ? extent : kUsualHeight;
    };
    for (const Seat& one : above) {
        seat(m_rows, place++, one.place.widget, m_shares);
        sizes << height(one);
    }
    seat(m_rows, place++, m_row, true);
    sizes << (m_shares ? kUsualExtent : std::max(kUsualExtent, window()->height()));
    for (const Seat& one : below) {
        seat(m_rows, place++, one.place.widget, m_shares);
        sizes << height(one);
    }
    const auto inRow = [](const Seat& one) {
        return one.side != EPlacement::Top && one.side != EPlacement::Bottom;
    };
    // What shares its height with nothing takes all of it.
    m_row->setHidden(m_shares && std::none_of(m_seats.begin(), m_seats.end(), inRow));
    m_rows->setSizes(sizes);
}

} // namespace Vu
