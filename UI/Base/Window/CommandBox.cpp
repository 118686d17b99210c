#include "UI/Base/Window/CommandBox.h"

#include "Server/Base/TranscriptSecrets.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/ProgressBar.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Window/Accessible.h"
#include "UI/Base/Window/CommandAnswers.h"
#include "UI/Base/Window/CompletionPopup.h"
#include "UI/Base/Window/KeyboardHold.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/PythonLine.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/Window/TypedAhead.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

namespace Vu {

CommandBox::CommandBox(QWidget* parent)
    : QFrame(parent),
      m_edit(new QLineEdit(this)),
      m_answers(new CommandAnswers(m_edit)),
      m_popup(new CompletionPopup(m_edit, this)),
      m_completion(m_edit, m_popup),
      m_language(new QToolButton(this)),
      m_history(UIBaseOptionGroup::get()->commandHistory)
{
    setObjectName(QStringLiteral("commandBox"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    column->setSpacing(kMargin / 2);
    auto* row = new QHBoxLayout;
    row->setSpacing(kMargin / 2);
    row->addWidget(m_language);
    row->addWidget(m_edit);
    column->addLayout(row);

    m_edit->setObjectName(QStringLiteral("commandLine"));
    m_edit->setAccessibleName(QString::fromStdWString(localized("AreaCommandLine", "Command Line")));
    m_language->setObjectName(QStringLiteral("lineLanguage"));
    m_language->setAutoRaise(true);
    m_language->setCheckable(true);
    m_language->setFocusPolicy(Qt::TabFocus);
    m_language->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_language->setAccessibleName(QStringLiteral("Python"));
    connect(m_language, &QToolButton::clicked, this, [this](bool python) {
        takesPython(python);
        m_edit->setFocus();
    });
    showClicked({});
    showLanguage();
    m_edit->installEventFilter(this);
    connect(m_edit, &QLineEdit::textEdited, this, &CommandBox::typed);
    // Only now, because the icon of that button is Qt's, which loads the plugins of all formats for it.
    connect(m_edit, &QLineEdit::textChanged, this, [this] { Accessible::clearButton(m_edit); });
    connect(m_popup, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { accept(m_popup->row(item)); });
}

CommandBox::~CommandBox()
{
    delete m_answers.data();
}

QListWidget* CommandBox::popup() const
{
    return m_popup;
}

QLabel* CommandBox::answer() const
{
    return m_answers->answer();
}

QPlainTextEdit* CommandBox::output() const
{
    return m_answers->output();
}

bool CommandBox::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::Hide:
        if (m_answers)
            m_answers->hide(); // The line doesn't know yet that it can't be seen any more.
        break;
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::ParentChange:
        if (m_answers)
            m_answers->place();
        break;
    default:
        break;
    }
    return QFrame::event(event);
}

bool CommandBox::eventFilter(QObject* object, QEvent* event)
{
    if (object == m_edit) {
        if (event->type() == QEvent::KeyPress && key(static_cast<QKeyEvent*>(event)->key()))
            return true;
        if (event->type() == QEvent::FocusOut || event->type() == QEvent::Hide)
            m_popup->hide();
    }
    return QFrame::eventFilter(object, event);
}

bool CommandBox::key(int key)
{
    switch (key) {
    case Qt::Key_Tab:
        return tab();
    case Qt::Key_Up:
        return up();
    case Qt::Key_Down:
        return down();
    case Qt::Key_Escape:
        return escape();
    case Qt::Key_Backspace:
        return backspace();
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_popup->isChosen())
            accept(m_popup->currentRow());
        else
            run();
        return true;
    default:
        return false;
    }
}

LineHistory& CommandBox::history()
{
    return takesPython() ? m_python->history() : m_history;
}

void CommandBox::typed()
{
    showFailed(false);
    history().begin();
    if (takesPython()) {
        // Listing the attributes of objects runs their code, which must not happen on each keystroke.
        m_popup->hide();
    } else if (m_edit->text() == QLatin1String(">>>")) {
        m_edit->clear();
        takesPython(true);
    } else {
        m_completion.offer();
    }
}

void CommandBox::accept(int row)
{
    if (m_completion.accept(row))
        showFailed(false);
}

bool CommandBox::tab()
{
    const bool inStatement = takesPython() && m_python->goesOn();
    if (m_edit->text().isEmpty() && !inStatement)
        return false; // On to the next part of the window.
    if (takesPython() && m_edit->text().left(m_edit->cursorPosition()).trimmed().isEmpty())
        m_edit->insert(QStringLiteral("    "));
    else if (m_completion.complete())
        showFailed(false);
    return true;
}

bool CommandBox::up()
{
    if (m_popup->isChosen()) {
        m_popup->step(-1);
        return true;
    }
    m_popup->hide();
    recall(-1);
    return true;
}

bool CommandBox::down()
{
    if (m_popup->isVisible()) {
        m_popup->step(1);
        return true;
    }
    recall(1);
    return true;
}

bool CommandBox::escape()
{
    if (m_popup->isVisible()) {
        m_popup->hide();
        return true;
    }
    if (m_edit->text().isEmpty() && m_answers->saysNothing())
        return false;
    m_edit->clear();
    showFailed(false);
    if (takesPython() && m_python->goesOn()) {
        m_python->abandon();
        showLanguage();
    } else {
        m_answers->hideAll();
    }
    history().begin();
    return true;
}

bool CommandBox::backspace()
{
    if (!takesPython() || m_python->goesOn() || !m_edit->text().isEmpty())
        return false;
    takesPython(false);
    return true;
}

void CommandBox::takesPython(bool takes)
{
    m_popup->hide();
    if (takes && !m_python) {
        m_python = std::make_unique<PythonLine>();
        PythonLine::start();
    }
    if (takesPython() && m_python->goesOn())
        m_python->abandon();
    if (takes != m_takesPython) {
        m_edit->clear();
        m_answers->clearOutput();
    }
    m_takesPython = takes;
    m_completion.takesPython(takes);
    history().begin();
    showFailed(false);
    showLanguage();
    showClicked({});
}

void CommandBox::showLanguage()
{
    m_language->setText(takesPython() ? m_python->prompt().trimmed() : QStringLiteral(">"));
    m_language->setChecked(takesPython());
    PlainText::setTooltip(
        m_language,
        QString::fromStdWString(
            takesPython()
                ? localized("CommandLineToLines", "Lines of Python. Click for lines of commands")
                : localized("CommandLineToPython", "Lines of commands. Click for lines of Python")));
}

void CommandBox::showClicked(const std::wstring& line)
{
    if (takesPython()) {
        m_clicked.clear();
        m_edit->setPlaceholderText(QString::fromStdWString(
            localized("PythonLineHint", "Type Python; Tab completes, Backspace leads back to commands")));
        return;
    }
    m_clicked = QString::fromStdWString(Vs::TranscriptSecrets::hidden(line)).simplified();
    m_edit->setPlaceholderText(
        m_clicked.isEmpty()
            ? QString::fromStdWString(
                  localized("CommandLineHint", "Type a command; Tab completes, \"help\" lists what there is"))
            : m_clicked);
}

void CommandBox::recall(int step)
{
    if (step < 0 && m_edit->text().isEmpty() && !m_clicked.isEmpty()) {
        m_edit->setText(m_clicked);
        showFailed(false);
        return;
    }
    QString text = m_edit->text();
    if (!history().recall(step, text))
        return;
    m_edit->setText(text);
    showFailed(false);
}

void CommandBox::run()
{
    m_popup->hide();
    if (takesPython()) {
        runPython();
        return;
    }
    const QString line = m_edit->text().trimmed();
    if (line.isEmpty() || ProgressBar::get()->busy())
        return;
    m_answers->begin();
    // The line stays here until it has run, and is then removed together with whatever would have followed
    // it.
    const TypedAhead::Hold typed;
    const QPointer<CommandBox> self = this;
    KeyboardHold::handOut(*window());
    if (!self)
        return;
    const Vs::TextCommandResult result =
        Vs::TextCommandMgr::get()->executeCommandWithoutOutput(line.toStdWString(), true);
    // Only now is it known which part was a secret.
    const QString told = QString::fromStdWString(Vs::TranscriptSecrets::hidden(line.toStdWString()));
    if (!self) { // It closed this window.
        LineHistory(UIBaseOptionGroup::get()->commandHistory).remember(told);
        return;
    }
    m_history.remember(told);
    showClicked({});
    const bool failed = result.first != 0;
    if (!failed)
        m_edit->clear();
    showFailed(failed);
    m_answers->tell(QString::fromStdWString(result.second).trimmed(), failed);
}

void CommandBox::runPython()
{
    const QString line = m_edit->text();
    if ((line.trimmed().isEmpty() && !m_python->goesOn()) || ProgressBar::get()->busy())
        return;
    const TypedAhead::Hold typed;
    const QPointer<CommandBox> self = this;
    KeyboardHold::handOut(*window());
    if (!self)
        return;
    m_answers->print(m_python->prompt() + line, palette().color(QPalette::PlaceholderText));
    m_edit->clear();
    const bool stays = m_python->run(line);
    if (!self)
        return;
    if (!stays) {
        takesPython(false);
        return;
    }
    m_edit->setText(m_python->indentation());
    showLanguage();
}

void CommandBox::showFailed(bool failed)
{
    if (!failed && m_failed)
        m_answers->hideAnswer();
    m_failed = failed;
    m_edit->setProperty("failed", failed);
    m_edit->style()->unpolish(m_edit);
    m_edit->style()->polish(m_edit);
}

} // namespace Vu
