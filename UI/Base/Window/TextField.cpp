#include "UI/Base/Window/TextField.h"

#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Command/Private/RecentValues.h"
#include "UI/Base/Command/RealValueCommandInput.h"
#include "UI/Base/Program/LocalNumbers.h"
#include "UI/Base/Window/QtIcon.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QStyle>
#include <QToolButton>

#include <utility>

namespace Vu {
namespace {
/// Between the last key and the preview, in milliseconds.
constexpr int kPause = 250;

bool hasList(const CommandInputBase& input)
{
    const auto* number = Vs::cast<RealValueCommandInput>(&input);
    return number && number->hasMRU() && !number->readOnly();
}

/// Names, unlike numbers, are shown as they are.
std::wstring shownText(const CommandInputBase& input)
{
    const std::wstring text = input.displayText();
    return Vs::cast<RealValueCommandInput>(&input) ? localNumbers(text) : text;
}
} // namespace

TextField::TextField(CommandInputBase* input, QWidget* parent)
    : InputField(input, parent),
      m_line(new QLineEdit(this)),
      m_list(new QToolButton(this)),
      m_menu(new QMenu(m_list))
{
    add(m_line);
    add(m_list);
    m_line->setObjectName(QStringLiteral("inputLine"));
    m_line->installEventFilter(this);
    m_list->setProperty("flat", true);
    m_list->setText(QString(QChar(u'\u25be')));
    m_list->setFixedWidth(kBesideWidth);
    // The Down key opens it, so it isn't a tab stop in the panel.
    m_list->setFocusPolicy(Qt::NoFocus);
    m_list->setPopupMode(QToolButton::InstantPopup);
    m_list->setMenu(m_menu);
    m_pause.setSingleShot(true);
    m_pause.setInterval(kPause);
    connect(m_menu, &QMenu::aboutToShow, this, [this] { fillList(); });
    connect(&m_pause, &QTimer::timeout, this, [this] { type(CommandInputValueChangeEvent::EKind::Typing); });
    connect(m_line, &QLineEdit::textEdited, this, [this] {
        m_edited = true;
        m_pause.start();
    });
    connect(m_line, &QLineEdit::editingFinished, this, [this] { enter(); });
}

void TextField::forget()
{
    m_pause.stop();
    InputField::forget();
}

void TextField::type(CommandInputValueChangeEvent::EKind kind)
{
    m_pause.stop();
    if (input() && !input()->readOnly())
        input()->typed(Vs::cast<RealValueCommandInput>(input()) ? plainNumbers(m_line->text().toStdWString())
                                                                : m_line->text().toStdWString(),
                       kind);
}

void TextField::enter()
{
    if (!input() || !std::exchange(m_edited, false))
        return;
    const std::wstring text = m_line->text().toStdWString();
    const CommandInUse inUse(input()->commandInputSet()->command());
    CommandInputBase* const typedInto = input();
    type(CommandInputValueChangeEvent::EKind::Entered);
    if (hasList(*typedInto) && typedInto->valid())
        RecentValues::add(*typedInto, text);
    refresh();
}

void TextField::show(const CommandInputBase& input, bool failed)
{
    m_line->setReadOnly(input.readOnly());
    m_list->setVisible(hasList(input));
    // Invalid text stays there to be corrected. Setting the same text would drop the selection in it.
    const QString text = QString::fromStdWString(shownText(input));
    if (!m_edited && !input.refused() && m_line->text() != text)
        m_line->setText(text);
    if (m_line->property("failed").toBool() == failed)
        return;
    m_line->setProperty("failed", failed);
    m_line->style()->unpolish(m_line);
    m_line->style()->polish(m_line);
}

bool TextField::eventFilter(QObject* object, QEvent* event)
{
    const auto* key = event->type() == QEvent::KeyPress ? static_cast<QKeyEvent*>(event) : nullptr;
    if (key && key->key() == Qt::Key_Down && !(key->modifiers() & Qt::ControlModifier) &&
        m_list->isVisible()) {
        m_list->showMenu();
        return true;
    }
    return InputField::eventFilter(object, event);
}

void TextField::fillList()
{
    m_menu->clear();
    auto* number = Vs::cast<RealValueCommandInput>(input());
    if (!number)
        return;
    for (const std::wstring& text : RecentValues::of(*number))
        connect(m_menu->addAction(QString::fromStdWString(text)), &QAction::triggered, this,
                [this, text] { choose(text); });
    const std::vector<Info*> commands = number->mruCommands();
    if (!commands.empty())
        m_menu->addSeparator();
    for (const Info* command : commands)
        connect(m_menu->addAction(iconOf(command->icon()), QString::fromStdWString(command->name())),
                &QAction::triggered, this, [this, key = command->key()] {
                    if (auto* filled = Vs::cast<RealValueCommandInput>(input()))
                        filled->triggerMruCommand(key);
                });
    if (m_menu->isEmpty())
        m_menu->addAction(QString::fromStdWString(localized("InputNoRecent", "No recent values")))
            ->setEnabled(false);
}

void TextField::choose(const std::wstring& text)
{
    m_line->setText(QString::fromStdWString(text));
    m_edited = true;
    enter();
}

} // namespace Vu
