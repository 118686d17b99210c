#include "UI/Base/Window/CollapseBar.h"

#include "UI/Base/Window/PanelFrame.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/Workspace/Area.h"
#include "UI/Base/Workspace/LayoutStrategy.h"

#include <QBoxLayout>
#include <QStyleOptionToolButton>
#include <QStylePainter>
#include <QToolButton>

namespace Vu {
namespace {

/// Reads from the bottom up if it is vertical.
class BarButton : public QToolButton
{
public:
    BarButton(bool upright, QWidget* parent) : QToolButton(parent), m_upright(upright)
    {
        setObjectName(QStringLiteral("collapsedArea"));
        setProperty("flat", true);
        setAutoRaise(true);
    }

    QSize sizeHint() const override
    {
        return m_upright ? QToolButton::sizeHint().transposed() : QToolButton::sizeHint();
    }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        if (!m_upright) {
            QToolButton::paintEvent(event);
            return;
        }
        QStylePainter painter(this);
        painter.translate(0, height());
        painter.rotate(-90);
        QStyleOptionToolButton option;
        initStyleOption(&option);
        option.rect = option.rect.transposed();
        painter.drawComplexControl(QStyle::CC_ToolButton, option);
    }

private:
    bool m_upright;
};

} // namespace

CollapseBar::CollapseBar(bool upright, QWidget* parent)
    : QFrame(parent),
      m_upright(upright),
      m_row(new QBoxLayout(upright ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight, this))
{
    setObjectName(QStringLiteral("collapseBar"));
    m_row->setContentsMargins(2, kMargin, 2, kMargin);
    m_row->setSpacing(kMargin);
    m_row->addStretch(1);
    hide();
}

void CollapseBar::areas(const std::vector<Area*>& collapsed)
{
    std::vector<unsigned long> numbers;
    for (const Area* area : collapsed)
        numbers.push_back(area->number());
    if (numbers == m_numbers)
        return;
    m_numbers = std::move(numbers);
    for (QObject* child : QObjectList(children()))
        if (auto* button = qobject_cast<QToolButton*>(child)) {
            button->hide();
            button->deleteLater(); // It may be the sender of the click that leads here.
        }
    int place = 0;
    for (Area* area : collapsed) {
        auto* button = new BarButton(m_upright, this);
        button->setText(areaTitle(*area));
        // The button is removed before its area: a layout with other areas gives the bar others.
        connect(button, &QToolButton::clicked, this,
                [area] { LayoutStrategy::activeStrategy()->expand(area); });
        m_row->insertWidget(place++, button);
        button->show();
    }
    setVisible(!collapsed.empty());
}

} // namespace Vu
