#include "UI/Base/Window/AlertButton.h"

#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"

#include <QMenu>

namespace Vu {
namespace {
constexpr qsizetype kKept = 20;
constexpr qsizetype kLongestEntry = 160;
} // namespace

AlertButton::AlertButton(QWidget* parent) : QToolButton(parent)
{
    setObjectName(QStringLiteral("alerts"));
    setAutoRaise(true);
    setFocusPolicy(Qt::NoFocus);
    setPopupMode(QToolButton::InstantPopup);
    auto* menu = new QMenu(this);
    setMenu(menu);
    connect(menu, &QMenu::aboutToShow, this, [this, menu] {
        menu->clear();
        for (const QString& text : m_texts) {
            QString entry = text.simplified().left(kLongestEntry);
            QAction* action = menu->addAction(entry.replace(QLatin1Char('&'), QLatin1String("&&")));
            PlainText::setTooltip(action, text);
        }
        menu->setToolTipsVisible(true);
        menu->addSeparator();
        connect(menu->addAction(QString::fromStdWString(localized("AlertsClear", "Clear"))),
                &QAction::triggered, this, [this] { clear(); });
    });
    draw();
}

void AlertButton::add(const Alert& alert)
{
    m_texts.prepend(QString::fromStdWString(alert.text));
    while (m_texts.size() > kKept)
        m_texts.removeLast();
    m_hasError = m_hasError || alert.severity == EAlertSeverity::Error;
    draw();
}

void AlertButton::clear()
{
    m_texts.clear();
    m_hasError = false;
    draw();
}

void AlertButton::draw()
{
    setVisible(!m_texts.isEmpty());
    setText(QString::fromStdWString(
        m_texts.size() == 1 ? localized("OneMessage", "1 message")
                            : localizedFormat("SeveralMessages", "%1% messages", m_texts.size())));
    QPalette colours = parentWidget() ? parentWidget()->palette() : palette();
    if (m_hasError)
        colours.setColor(QPalette::ButtonText, errorColour());
    setPalette(colours);
}

} // namespace Vu
