#include "UI/Base/Window/PlacedHuds.h"

#include "UI/Base/Command/CommandInput.h"
#include "UI/Base/Program/LocalNumbers.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"

#include <QFrame>
#include <QGridLayout>
#include <QLabel>

#include <algorithm>

namespace Vu {
namespace {

/// From the place that a plate describes.
constexpr int kDistance = 14;

/// Shows the inputs that have something to show; returns whether there are any. The grid keeps its labels,
/// two to a row.
bool fill(QGridLayout* grid, const Group& group)
{
    int row = 0;
    const auto label = [&](int column) {
        auto* item = grid->itemAtPosition(row, column);
        if (item)
            return static_cast<QLabel*>(item->widget());
        auto* made = PlainText::label(grid->parentWidget());
        made->setAlignment(column == 0 ? Qt::AlignLeft : Qt::AlignRight);
        grid->addWidget(made, row, column);
        return made;
    };
    for (const CommandInputBase* input : group.children()) {
        if (!input->isUsable())
            continue;
        label(0)->setText(QString::fromStdWString(input->info()->name()));
        label(1)->setText(QString::fromStdWString(localNumbers(input->displayText())));
        label(0)->show();
        label(1)->show();
        ++row;
    }
    const bool any = row > 0;
    for (; row < grid->rowCount() && grid->itemAtPosition(row, 0); ++row) {
        label(0)->hide();
        label(1)->hide();
    }
    return any;
}

} // namespace

PlacedHuds::PlacedHuds(QWidget* frame) : m_frame(frame), m_hint(PlainText::label(frame))
{
    m_hint->setObjectName(QStringLiteral("canvasHint"));
    m_hint->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_hint->setContentsMargins(kMargin, kMargin / 2, kMargin, kMargin / 2);
    m_hint->hide();
    m_soon.setSingleShot(true);
    QObject::connect(&m_soon, &QTimer::timeout, frame, [this] { refresh(); });
    m_subscriptions.add(HUDManager::get(), this);
}

void PlacedHuds::canvas(bool active, const QPoint& corner)
{
    if (m_active == active && m_corner == corner)
        return;
    m_active = active;
    m_corner = corner;
    m_soon.start(0);
}

QFrame* PlacedHuds::plateOf(const PlacedHUD& hud)
{
    QFrame*& plate = m_plates[hud.id()];
    if (!plate) {
        plate = new QFrame(m_frame);
        plate->setObjectName(QStringLiteral("hud"));
        plate->setAttribute(Qt::WA_TransparentForMouseEvents);
        auto* grid = new QGridLayout(plate);
        grid->setContentsMargins(kMargin, kMargin / 2, kMargin, kMargin / 2);
        grid->setHorizontalSpacing(2 * kMargin);
        grid->setVerticalSpacing(0);
    }
    return plate;
}

void PlacedHuds::refresh()
{
    int lowest = 0; // The bottom of the previous plate, which the next one may not cover.
    QRect before;
    for (const PlacedHUD& hud : HUDManager::get()->huds()) {
        if (!m_active || !hud.shown()) {
            if (const auto known = m_plates.find(hud.id()); known != m_plates.end())
                known->second->hide();
            continue;
        }
        QFrame* plate = plateOf(hud);
        if (!fill(static_cast<QGridLayout*>(plate->layout()), *hud.group())) {
            plate->hide();
            continue;
        }
        plate->layout()->activate();
        put(plate, hud.place());
        keepOffPanel(*plate);
        if (plate->geometry().intersects(before))
            plate->move(plate->x(), std::min(lowest + 2, m_frame->height() - plate->height()));
        before = before.united(plate->geometry());
        lowest = std::max(lowest, plate->geometry().bottom());
        plate->show();
        plate->raise();
    }
    showHint();
}

void PlacedHuds::showHint()
{
    const std::wstring& text = HUDManager::get()->hintText();
    m_hint->setVisible(m_active && !text.empty());
    if (!m_hint->isVisible())
        return;
    m_hint->setText(QString::fromStdWString(text));
    put(m_hint, HUDManager::get()->hintPlace());
    m_hint->raise();
}

/// Beside the panel of the running command, on its inner side.
void PlacedHuds::keepOffPanel(QWidget& plate) const
{
    const auto* panel = m_frame->window()->findChild<QWidget*>(QStringLiteral("commandPanel"));
    if (!panel || !panel->isVisible())
        return;
    const QRect covered(m_frame->mapFrom(m_frame->window(), panel->pos()), panel->size());
    if (!covered.intersects(plate.geometry()))
        return;
    const bool atLeft = covered.center().x() < m_frame->width() / 2;
    plate.move(atLeft ? covered.right() + 1 + kMargin : covered.left() - kMargin - plate.width(), plate.y());
}

// Beside the place, and within the frame.
void PlacedHuds::put(QWidget* widget, const Vs::Point2& place)
{
    const QSize size = widget->sizeHint();
    const auto within = [](int at, int length, int room) {
        return std::clamp(at, 0, std::max(0, room - length));
    };
    widget->setGeometry(within(m_corner.x() + place.x + kDistance, size.width(), m_frame->width()),
                        within(m_corner.y() + place.y + kDistance, size.height(), m_frame->height()),
                        size.width(), size.height());
}

} // namespace Vu
