#include "UI/Base/Window/CommandButton.h"

#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Program/ExtendedInfoLoader.h"
#include "UI/Base/Window/CommandMenu.h"
#include "UI/Base/Window/KeyTable.h"
#include "UI/Base/Window/MenuButton.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/QtIcon.h"
#include "UI/Base/Window/RestingCommand.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/Workspace/ToolbarManager.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCursor>
#include <QEvent>
#include <QFrame>
#include <QMenu>
#include <QPainter>

namespace Vu {
namespace {

/// After a text that opens a list.
constexpr const char16_t* kListSign = u" \u25be";

QString keysOf(const CommandDefinition& definition, const Info& info)
{
    QString keys = KeyTable::get()->shown(definition);
    // A click on a split button may run another command, which its record names.
    const CommandDefinition* clicked = CommandDefinitionMgr::get()->findCommandDefinitionById(info.key());
    if (keys.isEmpty() && clicked)
        keys = KeyTable::get()->shown(*clicked);
    return keys;
}

/// Below the title, one paragraph each.
QStringList paragraphs(const Info& info, const ToolTipInfo& tooltip)
{
    QStringList paragraphs;
    for (const std::wstring& text :
         {tooltip.description() == info.name() ? std::wstring() : tooltip.description(), tooltip.extended(),
          ExtendedInfoLoader::text(info.key())})
        if (!text.empty())
            paragraphs << QString::fromStdWString(text);
    return paragraphs;
}

void showTooltip(QWidget* widget, const CommandDefinition& definition, const Info& info,
                 const ToolTipInfo& tooltip)
{
    const QStringList below = paragraphs(info, tooltip);
    const QString keys = keysOf(definition, info);
    QString html =
        QStringLiteral("<b>") + QString::fromStdWString(info.name()).toHtmlEscaped() + QStringLiteral("</b>");
    if (!keys.isEmpty())
        html += QStringLiteral("&nbsp;&nbsp;") + keys.toHtmlEscaped();
    for (const QString& text : below)
        html += QStringLiteral("<br>") + text.toHtmlEscaped();
    QStringList spoken = keys.isEmpty() ? below : below + QStringList(keys);
    if (spoken.isEmpty())
        spoken << QString::fromStdWString(info.name());
    PlainText::setMarkupTooltip(widget, html, spoken.join(QStringLiteral(". ")));
}

/// Whether the command is the user's present tool.
bool runs(const CommandDefinition& definition)
{
    const CommandBase* active = commandRests() ? nullptr : CommandBase::getActiveCommand();
    return active && active->commandDefinition() == &definition;
}

void makeFlat(QToolButton* button)
{
    button->setProperty("flat", true);
    button->setAutoRaise(true);
    button->setIconSize(QSize(kIconSize, kIconSize));
    button->setFocusPolicy(Qt::NoFocus);
}

/// While a menu is open, the window system doesn't notify its button of a pointer that leaves.
void leaveWith(QMenu* menu, QToolButton* button)
{
    QObject::connect(menu, &QMenu::aboutToHide, button, [button] {
        if (!button->underMouse() || button->rect().contains(button->mapFromGlobal(QCursor::pos())))
            return;
        button->setAttribute(Qt::WA_UnderMouse, false);
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(button, &leave);
    });
}

QFrame* separator(QWidget* parent)
{
    auto* line = new QFrame(parent);
    line->setFrameShape(QFrame::VLine);
    line->setFixedHeight(kIconSize);
    QPalette colours = line->palette();
    colours.setColor(QPalette::WindowText, colours.color(QPalette::Mid));
    line->setPalette(colours);
    return line;
}

} // namespace

CommandButton::CommandButton(CommandDefinition* definition, const std::wstring& picture, QWidget* parent)
    : QToolButton(parent),
      m_definition(definition),
      m_picture(iconAt(picture)),
      m_control(definition->inputControl())
{
    makeFlat(this);
    setObjectName(QString::fromStdWString(definition->id()));
    if (m_control)
        m_control->subscribe(this);
    if (opensMenu(*m_definition)) {
        m_menu = new QMenu(this);
        setMenu(m_menu);
        leaveWith(m_menu, this);
        connect(m_menu, &QMenu::aboutToShow, this, [this] { fillWithEntriesOf(m_menu, m_definition); });
        connect(this, &QToolButton::clicked, this, [this] {
            if (auto* list = Vs::cast<ListControl>(m_control))
                list->clicked();
        });
    } else {
        connect(this, &QToolButton::clicked, this, [this] {
            if (auto* button = Vs::cast<ButtonControl>(m_control))
                button->clicked();
            else if (m_control)
                makeOnlyKind(*m_definition);
        });
    }
    draw();
}

CommandButton::~CommandButton()
{
    if (m_control)
        m_control->unsubscribe(this);
}

void CommandButton::refresh()
{
    if (!m_control)
        return;
    CommandContext context = CommandContext::activeContext();
    m_definition->updateInputControl(&context);
    draw();
}

bool CommandButton::isWanted() const
{
    return m_control && m_control->visible();
}

void CommandButton::fits(bool value)
{
    m_fits = value;
    setVisible(isWanted() && m_fits);
}

QSize CommandButton::sizeHint() const
{
    QSize size = QToolButton::sizeHint();
    const auto* list = Vs::cast<ListControl>(m_control);
    if (!list || toolButtonStyle() != Qt::ToolButtonTextOnly)
        return size;
    int widest = 0;
    for (const Info* item : list->items())
        widest = std::max(widest, fontMetrics().horizontalAdvance(QString::fromStdWString(item->name()) +
                                                                  QString::fromUtf16(kListSign)));
    size.rwidth() += std::max(0, widest - fontMetrics().horizontalAdvance(text()));
    return size;
}

bool CommandButton::event(QEvent* event)
{
    if (m_control && event->type() == QEvent::Enter)
        m_control->hoverStart();
    else if (m_control && event->type() == QEvent::Leave)
        m_control->hoverEnd();
    else if (m_control && event->type() == QEvent::ToolTip)
        showTooltip(this, *m_definition, *m_control->info(), m_control->tooltip());
    return QToolButton::event(event);
}

/// Without an arrow, a corner marks a button that opens a list: a command that runs at once may have the same
/// icon.
void CommandButton::paintEvent(QPaintEvent* event)
{
    QToolButton::paintEvent(event);
    if (!m_menu || toolButtonStyle() != Qt::ToolButtonIconOnly || popupMode() == QToolButton::MenuButtonPopup)
        return;
    constexpr double kSide = 5;
    constexpr double kDistance = 3.5;
    const QPointF corner(width() - kDistance, height() - kDistance);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().brush(QPalette::ButtonText));
    painter.drawPolygon(QPolygonF{corner, corner - QPointF(kSide, 0), corner - QPointF(0, kSide)});
}

void CommandButton::inputControlChanged(InputControl*)
{
    draw();
}

void CommandButton::inputControlDestroyed(InputControl*)
{
    m_control = nullptr;
    setEnabled(false);
}

void CommandButton::draw()
{
    if (!m_control)
        return;
    const Info* info = m_control->info();
    const auto* list = Vs::cast<ListControl>(m_control);
    if (list && list->synchronizedWithCurrentItem() && list->selectedItem())
        info = list->selectedItem();
    if (m_menu)
        setPopupMode(list && list->split() ? QToolButton::MenuButtonPopup : QToolButton::InstantPopup);
    const QIcon icon = m_picture.isNull() && info->icon() ? iconOf(info->icon()) : m_picture;
    setText(title());
    setAccessibleName(spokenName());
    setIcon(icon);
    setToolButtonStyle(icon.isNull() ? Qt::ToolButtonTextOnly : Qt::ToolButtonIconOnly);
    setEnabled(m_control->enabled());
    setVisible(m_control->visible() && m_fits);
    const auto* button = Vs::cast<ButtonControl>(m_control);
    const bool lit = m_control->active() || (button && button->checked()) || runs(*m_definition);
    // A button that is no longer checkable would still look checked.
    setChecked(false);
    setCheckable(lit);
    setChecked(lit);
    if (toolTip().isEmpty())
        showTooltip(this, *m_definition, *info, m_control->tooltip());
}

QString CommandButton::title() const
{
    const auto* list = Vs::cast<ListControl>(m_control);
    if (!list)
        return QString::fromStdWString(m_control->info()->name());
    // A list without an icon of its own shows what is chosen.
    const Info* shown = list->selectedItem() ? list->selectedItem() : list->info();
    return QString::fromStdWString(shown->name()) + QString::fromUtf16(kListSign);
}

/// With the chosen item, if a list shows that.
QString CommandButton::spokenName() const
{
    std::wstring name = m_control->info()->name();
    if (name.empty())
        name = m_control->tooltip().description();
    const auto* list = Vs::cast<ListControl>(m_control);
    const Info* chosen = list ? list->selectedItem() : nullptr;
    if (chosen)
        name += (name.empty() ? L"" : L": ") + chosen->name();
    return QString::fromStdWString(name);
}

QToolButton* makeToolbarItem(const ToolbarItem& item, QWidget* parent, std::vector<CommandButton*>& buttons)
{
    if (item.separator())
        return nullptr;
    if (!item.isMenu()) {
        CommandDefinition* definition = CommandDefinitionMgr::get()->findCommandDefinitionById(item.command);
        return definition ? buttons.emplace_back(new CommandButton(definition, item.picture, parent))
                          : nullptr;
    }
    auto* button = new MenuButton(item, parent);
    makeFlat(button);
    leaveWith(button->menu(), button);
    return button;
}

void addToolbarItems(const std::vector<ToolbarItem>& items, QWidget* bar,
                     std::vector<CommandButton*>& buttons)
{
    auto* row = static_cast<QBoxLayout*>(bar->layout());
    bool wantsLine = false;
    for (const ToolbarItem& item : items) {
        wantsLine = wantsLine || item.separator();
        QToolButton* button = makeToolbarItem(item, bar, buttons);
        if (!button)
            continue;
        // A separator only appears between two items: not first, not last, not twice.
        if (wantsLine && row->count() > 0)
            row->addWidget(separator(bar));
        wantsLine = false;
        row->addWidget(button);
    }
}

} // namespace Vu
