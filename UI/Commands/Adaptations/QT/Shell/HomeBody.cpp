#include "UI/Commands/Adaptations/QT/Shell/HomeBody.h"

#include "UI/Base/Program/AreaContents.h"

#include <QResizeEvent>
#include <QVBoxLayout>

namespace Vu::Commands {
namespace {

constexpr int kSideWidth = 280, kSideMargin = 40, kSpacing = 16;
// Below this width, fewer than three tiles would fit beside the lists.
constexpr int kFolds = 3 * 196 + 2 * kSpacing + 2 * kSideMargin + kSideWidth;

QVBoxLayout* column(QWidget* widget)
{
    auto* layout = new QVBoxLayout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    return layout;
}

} // namespace

HomeBody::HomeBody(QWidget* parent)
    : QWidget(parent), m_columns(new QBoxLayout(QBoxLayout::LeftToRight, this)), m_side(new QWidget(this))
{
    m_columns->setContentsMargins(0, 0, 0, 0);
    m_columns->setSpacing(0);
    auto* tiles = new QWidget(this);
    QVBoxLayout* main = column(tiles);
    for (const char* key :
         {"HomeRecovered", "HomeFavourites", "HomeOpenDocuments", "HomeRecentDocuments", "HomeSamples"})
        if (QWidget* section = AreaContents::make(key, tiles))
            main->addWidget(section);
    main->addStretch(1);
    QVBoxLayout* side = column(m_side);
    side->setSpacing(kSpacing);
    for (const char* key : {"HomeLearn", "HomeScripts"})
        if (QWidget* list = AreaContents::make(key, m_side))
            side->addWidget(list);
    side->addStretch(1);
    m_columns->addWidget(tiles, 1);
    m_columns->addWidget(m_side);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    tiles->setSizePolicy(policy);
    setSizePolicy(policy);
    fold(kFolds);
}

void HomeBody::fold(int width)
{
    const bool beside = width >= kFolds;
    m_columns->setDirection(beside ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    m_side->layout()->setContentsMargins(beside ? 0 : kSideMargin, kSpacing, kSideMargin, kSpacing);
    m_side->setMinimumWidth(beside ? kSideWidth + kSideMargin : 0);
    m_side->setMaximumWidth(beside ? kSideWidth + kSideMargin : QWIDGETSIZE_MAX);
}

void HomeBody::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    fold(event->size().width());
}

} // namespace Vu::Commands
