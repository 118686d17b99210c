#include "UI/Base/Window/BellButton.h"

#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Window/Accessible.h"
#include "UI/Base/Window/Glyph.h"
#include "UI/Base/Window/NotificationPanel.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/ProgressPanel.h"
#include "UI/Base/Window/Theme.h"

#include <QAction>
#include <QEvent>

namespace Vu {
namespace {

constexpr int kBellSide = 18;
const QKeySequence kKeys(Qt::CTRL | Qt::SHIFT | Qt::Key_N);

} // namespace

BellButton::BellButton(ProgressPanel* progress, QWidget* parent)
    : QToolButton(parent), m_panel(new NotificationPanel(progress, this))
{
    Accessible::opener(this, m_panel, [this] { click(); });
    setObjectName(QStringLiteral("bell"));
    setAutoRaise(true);
    setFocusPolicy(Qt::NoFocus); // A shortcut opens it from anywhere, and the command line keeps the focus.
    setIcon(glyphIcon(Glyph::Bell));
    setIconSize(QSize(kBellSide, kBellSide));
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    connect(this, &QToolButton::clicked, this, [this] { m_panel->openAbove(*this); });
    auto* open = new QAction(parent);
    open->setShortcut(kKeys);
    connect(open, &QAction::triggered, this, [this] { m_panel->openAbove(*this); });
    parent->addAction(open);
    progress->keepsAlive({this, m_panel});
    m_subscriptions.add(Vs::NotificationsEventSource::get(), this);
    draw();
}

void BellButton::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::ApplicationPaletteChange)
        draw();
    QToolButton::changeEvent(event);
}

void BellButton::draw(const Vs::Notification* going)
{
    size_t count = 0;
    bool hasError = false;
    for (const Vs::Notification* notification : Vs::NotificationCenter::get()->notifications())
        if (notification != going && !notification->seen()) {
            ++count;
            hasError = hasError || notification->type().kind() == Vs::NotificationType::Error;
        }
    setText(count == 0 ? QString() : QString::number(count));
    const QString text = QString::fromStdWString(
        count == 0 ? localized("Notifications", "Notifications")
                   : localizedFormat("NotificationsUnseen", "Notifications, %1% not seen yet", count));
    setAccessibleName(text);
    PlainText::setTooltip(this, text + QStringLiteral(" (") + kKeys.toString(QKeySequence::NativeText) +
                                    QLatin1Char(')'));
    QPalette colours = parentWidget()->palette();
    if (hasError)
        colours.setColor(QPalette::ButtonText, errorColour());
    setPalette(colours);
}

} // namespace Vu
