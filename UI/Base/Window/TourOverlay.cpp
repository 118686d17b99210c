#include "UI/Base/Window/TourOverlay.h"

#include "Server/Base/FilledText.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/Window/Told.h"

#include <QBoxLayout>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>

#include <algorithm>

namespace Vu {
namespace {

constexpr const char* kContents = "areaContents";
constexpr int kCardWidth = 380;
constexpr int kDim = 120; ///< Of 255.
constexpr int kFrame = 2;

/// The position of a card of that size beside the lit area: below, above, right or left of it, wherever there
/// is room, or else within it.
QPoint placeOf(const QSize& card, const QRect& lit, const QRect& window)
{
    const QRect room = window.adjusted(kMargin, kMargin, -kMargin, -kMargin);
    const QPoint candidates[] = {{lit.left(), lit.bottom() + kMargin},
                                 {lit.left(), lit.top() - kMargin - card.height()},
                                 {lit.right() + kMargin, lit.top()},
                                 {lit.left() - kMargin - card.width(), lit.top()}};
    for (QPoint place : candidates) {
        // Along the area's edge it may be shifted into the window.
        if (place.y() > lit.bottom() || place.y() < lit.top())
            place.setX(
                std::clamp(place.x(), room.left(), std::max(room.left(), room.right() - card.width())));
        if (room.contains(QRect(place, card)))
            return place;
    }
    return lit.center() - QPoint(card.width() / 2, card.height() / 2);
}

} // namespace

void TourOverlay::markArea(QWidget* widget, const std::string& contents)
{
    widget->setProperty(kContents, QString::fromStdString(contents));
}

TourOverlay* TourOverlay::show(QWidget* window, const std::vector<TourStep>& steps)
{
    auto* overlay = new TourOverlay(window, steps);
    overlay->m_step = overlay->areaOf(0) ? 0 : overlay->shownFrom(0, true);
    if (overlay->m_step == steps.size()) {
        delete overlay;
        return nullptr;
    }
    overlay->QWidget::show();
    overlay->raise();
    overlay->refresh();
    overlay->setFocus();
    return overlay;
}

TourOverlay::TourOverlay(QWidget* window, const std::vector<TourStep>& steps)
    : QWidget(window),
      m_steps(steps),
      m_card(new QFrame(this)),
      m_title(PlainText::label(m_card)),
      m_text(PlainText::label(m_card)),
      m_count(PlainText::label(m_card)),
      m_back(new QPushButton(told("TourBack", "Back"))),
      m_next(new QPushButton)
{
    setObjectName(QStringLiteral("tour"));
    m_card->setObjectName(QStringLiteral("tourCard"));
    m_card->setFixedWidth(kCardWidth);
    QFont bold = m_title->font();
    bold.setBold(true);
    m_title->setFont(bold);
    m_text->setWordWrap(true);
    auto* skip = new QPushButton(told("TourSkip", "Skip"));

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_count, 1);
    // All keys go to the tour itself, or Tab would reach what it covers.
    setFocusPolicy(Qt::StrongFocus);
    for (QPushButton* button : {skip, m_back, m_next}) {
        button->setFocusPolicy(Qt::NoFocus);
        buttons->addWidget(button);
    }
    auto* column = new QVBoxLayout(m_card);
    column->addWidget(m_title);
    column->addWidget(m_text);
    column->addSpacing(kMargin);
    column->addLayout(buttons);

    connect(skip, &QPushButton::clicked, this, &QWidget::deleteLater);
    connect(m_back, &QPushButton::clicked, this, [this] { go(false); });
    connect(m_next, &QPushButton::clicked, this, [this] { go(true); });
    window->installEventFilter(this);
}

bool TourOverlay::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest)
        QMetaObject::invokeMethod(this, &TourOverlay::refresh, Qt::QueuedConnection);
    return QWidget::eventFilter(watched, event);
}

QWidget* TourOverlay::areaOf(size_t step) const
{
    if (step >= m_steps.size())
        return nullptr;
    const QString contents = QString::fromStdString(m_steps[step].contents);
    for (QWidget* widget : parentWidget()->findChildren<QWidget*>())
        if (widget->property(kContents).toString() == contents && widget->isVisible())
            return widget;
    return nullptr;
}

size_t TourOverlay::shownFrom(size_t step, bool forwards) const
{
    while (forwards ? step + 1 < m_steps.size() : step > 0) {
        forwards ? ++step : --step;
        if (areaOf(step))
            return step;
    }
    return m_steps.size();
}

void TourOverlay::go(bool forwards)
{
    const size_t step = shownFrom(m_step, forwards);
    if (step < m_steps.size()) {
        m_step = step;
        refresh();
    } else if (forwards) {
        deleteLater();
    }
}

void TourOverlay::refresh()
{
    setGeometry(parentWidget()->rect());
    const TourStep& step = m_steps[m_step];
    m_title->setText(QString::fromStdWString(step.title));
    m_text->setText(QString::fromStdWString(step.text));
    m_count->setText(
        QString::fromStdWString(localizedFormat("TourCount", "%1% of %2%", m_step + 1, m_steps.size())));
    m_back->setEnabled(shownFrom(m_step, false) < m_steps.size());
    const bool last = shownFrom(m_step, true) == m_steps.size();
    m_next->setText(last ? told("TourEnd", "Close") : told("TourNext", "Next"));
    m_card->adjustSize();
    m_card->move(placeOf(m_card->size(), lit(), rect()));
    update();
}

QRect TourOverlay::lit() const
{
    const QWidget* area = areaOf(m_step);
    return area ? QRect(area->mapTo(parentWidget(), QPoint()), area->size()) : QRect();
}

void TourOverlay::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    QPainterPath dimmed;
    dimmed.addRect(rect());
    QPainterPath light;
    light.addRect(lit());
    painter.fillPath(dimmed.subtracted(light), QColor(0, 0, 0, kDim));
    painter.setPen(QPen(palette().color(QPalette::Highlight), kFrame));
    painter.drawRect(lit().adjusted(kFrame / 2, kFrame / 2, -kFrame / 2, -kFrame / 2));
}

void TourOverlay::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
        deleteLater();
        break;
    case Qt::Key_Left:
        go(false);
        break;
    case Qt::Key_Right:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        go(true);
        break;
    default:
        break;
    }
}

} // namespace Vu
