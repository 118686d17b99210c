#include "UI/Base/Window/CommandBox.h"

#include "Server/Base/PythonManager.h"
#include "Server/Base/TextCompletion.h"
#include "Server/Base/TranscriptSecrets.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/ProgressBar.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Window/Accessible.h"
#include "UI/Base/Window/KeyboardHold.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/PythonLine.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/Window/TypedAhead.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QStyle>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace Vu {
namespace {

constexpr int kVisibleCandidates = 10;
constexpr int kOutputHeight = 140;
/// A script that prints endlessly must not use up all memory.
constexpr int kMostLines = 10000;

QString commonStart(const QStringList& texts)
{
    QString common = texts.value(0);
    for (const QString& text : texts) {
        qsizetype length = 0;
        while (length < common.size() && length < text.size() && common[length] == text[length])
            ++length;
        common.truncate(length);
    }
    return common;
}

/// An area is followed by a command's name, a folder by its contents.
bool goesOn(const QString& candidate)
{
    return candidate.endsWith(QLatin1Char('.')) || candidate.endsWith(QLatin1Char('/'));
}

} // namespace

CommandBox::CommandBox(QWidget* parent)
    : QFrame(parent),
      m_answers(new QFrame(window())),
      m_edit(new QLineEdit(this)),
      m_answer(PlainText::label(m_answers)),
      m_output(new QPlainTextEdit(m_answers)),
      m_popup(new QListWidget(this)),
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
    m_answers->setObjectName(QStringLiteral("commandAnswer"));
    m_answers->setAutoFillBackground(true);
    m_answers->hide();
    auto* answers = new QVBoxLayout(m_answers);
    answers->setContentsMargins(kMargin, kMargin / 2, kMargin, kMargin / 2);
    answers->addWidget(m_output);
    answers->addWidget(m_answer);

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
    m_answer->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_answer->setWordWrap(true);
    m_answer->hide();
    m_output->setObjectName(QStringLiteral("commandOutput"));
    m_output->setAccessibleName(QString::fromStdWString(localized("CommandLineAnswer", "Answer")));
    m_output->setReadOnly(true);
    m_output->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_output->setFixedHeight(kOutputHeight);
    m_output->setMaximumBlockCount(kMostLines);
    m_output->hide();

    // A window of its own that never takes the focus: typing goes on in the line.
    m_popup->setAccessibleName(QString::fromStdWString(localized("CommandLineOffer", "Completions")));
    m_popup->setWindowFlags(Qt::ToolTip | Qt::FramelessWindowHint);
    m_popup->setAttribute(Qt::WA_ShowWithoutActivating);
    m_popup->setFocusPolicy(Qt::NoFocus);
    m_popup->setUniformItemSizes(true);
    m_popup->hide();

    connect(m_edit, &QLineEdit::textEdited, this, &CommandBox::typed);
    // Only now, because the icon of that button is Qt's, which loads the plugins of all formats for it.
    connect(m_edit, &QLineEdit::textChanged, this, [this] { Accessible::clearButton(m_edit); });
    connect(m_popup, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { accept(m_popup->row(item)); });

    Vs::PythonManager::get()->display(this);
}

CommandBox::~CommandBox()
{
    if (Vs::PythonManager::get()->display() == this)
        Vs::PythonManager::get()->display(nullptr);
    delete m_answers.data();
}

bool CommandBox::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::ParentChange:
        placeAnswers();
        break;
    default:
        break;
    }
    return QFrame::event(event);
}

void CommandBox::placeAnswers()
{
    if (!m_answers)
        return;
    const bool any = isVisible() && !(m_answer->isHidden() && m_output->isHidden());
    if (any) {
        if (m_answers->parentWidget() != window())
            m_answers->setParent(window());
        const QPoint line = m_edit->mapTo(window(), QPoint());
        const int height = m_answers->layout()->heightForWidth(m_edit->width());
        const int wanted = std::max(height, m_answers->sizeHint().height());
        m_answers->setGeometry(line.x(), std::max(0, line.y() - wanted - kMargin), m_edit->width(), wanted);
        m_answers->raise();
    }
    m_answers->setVisible(any);
}

bool CommandBox::eventFilter(QObject* object, QEvent* event)
{
    if (object == m_edit) {
        if (event->type() == QEvent::KeyPress && key(static_cast<QKeyEvent*>(event)->key()))
            return true;
        if (event->type() == QEvent::FocusOut || event->type() == QEvent::Hide)
            hideOffer();
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
        if (m_popup->isVisible() && m_popup->currentRow() >= 0)
            accept(m_popup->currentRow());
        else
            run();
        return true;
    default:
        return false;
    }
}

QString CommandBox::word() const
{
    const QString line = m_edit->text();
    const int cursor = m_edit->cursorPosition();
    if (takesPython())
        return line.left(cursor).mid(PythonLine::wordStart(line, cursor));
    const size_t start = Vs::TextCompletion::wordStart(line.toStdWString(), static_cast<size_t>(cursor));
    return line.mid(static_cast<qsizetype>(start), cursor - static_cast<qsizetype>(start));
}

void CommandBox::replaceWord(const QString& text)
{
    const int end = m_edit->cursorPosition();
    m_edit->setSelection(end - static_cast<int>(word().size()), static_cast<int>(word().size()));
    m_edit->insert(text);
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
        hideOffer();
    } else if (m_edit->text() == QLatin1String(">>>")) {
        m_edit->clear();
        takesPython(true);
    } else {
        offer();
    }
}

void CommandBox::offer()
{
    const QString line = m_edit->text();
    QStringList candidates;
    if (takesPython())
        candidates = PythonLine::completions(line, m_edit->cursorPosition());
    else if (!line.trimmed().isEmpty())
        for (const std::wstring& candidate :
             Vs::TextCompletion::complete(line.toStdWString(), static_cast<size_t>(m_edit->cursorPosition())))
            candidates << QString::fromStdWString(candidate);
    candidates.removeAll(word());
    showOffer(candidates);
}

void CommandBox::showOffer(const QStringList& candidates)
{
    m_popup->clear();
    m_popup->addItems(candidates);
    m_popup->setCurrentRow(-1);
    if (candidates.isEmpty()) {
        hideOffer();
        return;
    }
    const int rows = std::min<int>(kVisibleCandidates, m_popup->count());
    const int height = rows * m_popup->sizeHintForRow(0) + 2 * m_popup->frameWidth();
    const int width = std::max(m_edit->width() / 2, m_popup->sizeHintForColumn(0) + 40);
    const QPoint corner = m_edit->mapToGlobal(QPoint(0, -height - 2));
    m_popup->setGeometry(corner.x(), corner.y(), std::min(width, m_edit->width()), height);
    m_popup->show();
}

void CommandBox::hideOffer()
{
    m_popup->hide();
}

void CommandBox::accept(int row)
{
    const QListWidgetItem* item = m_popup->item(row);
    if (!item)
        return;
    const QString text = item->text();
    hideOffer();
    showFailed(false);
    if (takesPython()) {
        replaceWord(text);
    } else if (goesOn(text)) {
        replaceWord(text);
        offer();
    } else {
        replaceWord(text + QLatin1Char(' '));
    }
}

bool CommandBox::tab()
{
    const bool inStatement = takesPython() && m_python->goesOn();
    if (m_edit->text().isEmpty() && !inStatement)
        return false; // On to the next part of the window.
    if (takesPython() && m_edit->text().left(m_edit->cursorPosition()).trimmed().isEmpty()) {
        m_edit->insert(QStringLiteral("    "));
        return true;
    }
    if (!m_popup->isVisible())
        offer();
    if (!m_popup->isVisible())
        return true; // Nothing to complete; the focus still stays.
    if (m_popup->currentRow() >= 0 || m_popup->count() == 1) {
        accept(std::max(0, m_popup->currentRow()));
        return true;
    }
    QStringList candidates;
    for (int row = 0; row < m_popup->count(); ++row)
        candidates << m_popup->item(row)->text();
    const QString common = commonStart(candidates);
    if (common.size() > word().size()) {
        replaceWord(common);
        offer();
    } else {
        m_popup->setCurrentRow(0);
    }
    return true;
}

bool CommandBox::up()
{
    if (m_popup->isVisible() && m_popup->currentRow() >= 0) {
        m_popup->setCurrentRow(m_popup->currentRow() - 1);
        return true;
    }
    hideOffer();
    recall(-1);
    return true;
}

bool CommandBox::down()
{
    if (m_popup->isVisible()) {
        m_popup->setCurrentRow(std::min(m_popup->currentRow() + 1, m_popup->count() - 1));
        return true;
    }
    recall(1);
    return true;
}

bool CommandBox::escape()
{
    if (m_popup->isVisible()) {
        hideOffer();
        return true;
    }
    if (m_edit->text().isEmpty() && m_answer->isHidden() && m_output->isHidden())
        return false;
    m_edit->clear();
    showFailed(false);
    if (takesPython() && m_python->goesOn()) {
        m_python->abandon();
        showLanguage();
    } else {
        m_answer->hide();
        m_output->hide();
    }
    placeAnswers();
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
    hideOffer();
    if (takes && !m_python) {
        m_python = std::make_unique<PythonLine>();
        PythonLine::start();
    }
    if (takesPython() && m_python->goesOn())
        m_python->abandon();
    if (takes != m_takesPython) {
        m_edit->clear();
        m_answer->hide();
        m_output->clear();
        m_output->hide();
        placeAnswers();
    }
    m_takesPython = takes;
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
    hideOffer();
    if (takesPython()) {
        runPython();
        return;
    }
    const QString line = m_edit->text().trimmed();
    if (line.isEmpty() || ProgressBar::get()->busy())
        return;
    m_printed = false;
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
    m_history.remember(QString::fromStdWString(Vs::TranscriptSecrets::hidden(line.toStdWString())));
    showClicked({});
    const bool failed = result.first != 0;
    if (!failed)
        m_edit->clear();
    showAnswer(QString::fromStdWString(result.second).trimmed(), failed);
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
    QColor muted = palette().color(QPalette::PlaceholderText);
    print((m_python->prompt() + line).toStdWString(), muted);
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
    if (!failed && m_failed) {
        m_answer->hide();
        placeAnswers();
    }
    m_failed = failed;
    m_edit->setProperty("failed", failed);
    m_edit->style()->unpolish(m_edit);
    m_edit->style()->polish(m_edit);
}

void CommandBox::showAnswer(const QString& text, bool failed)
{
    const bool longText = !failed && text.contains(QLatin1Char('\n'));
    showFailed(failed);
    QPalette colours = palette();
    if (failed)
        colours.setColor(QPalette::WindowText, errorColour());
    m_answer->setPalette(colours);
    m_answer->setText(longText ? QString() : text);
    m_answer->setVisible(!longText && !text.isEmpty());
    if (m_printed) {
        if (longText)
            message(text.toStdWString());
        placeAnswers();
        return;
    }
    m_output->setPlainText(longText ? text : QString());
    fitOutput();
    m_output->setVisible(longText);
    placeAnswers();
}

void CommandBox::fitOutput()
{
    const int lines = m_output->blockCount() + 1;
    m_output->setFixedHeight(
        std::min(kOutputHeight, lines * m_output->fontMetrics().lineSpacing() + kMargin));
}

void CommandBox::message(const std::wstring& text)
{
    print(text, palette().color(QPalette::Text));
}

void CommandBox::error(const std::wstring& text)
{
    print(text, errorColour());
}

void CommandBox::print(const std::wstring& text, const QColor& colour)
{
    m_printed = true;
    QTextCharFormat format;
    format.setForeground(colour);
    const bool first = m_output->document()->isEmpty();
    QTextCursor end(m_output->document());
    end.movePosition(QTextCursor::End);
    end.insertText((first ? QString() : QStringLiteral("\n")) + QString::fromStdWString(text), format);
    fitOutput();
    m_output->show();
    placeAnswers();
    m_output->verticalScrollBar()->setValue(m_output->verticalScrollBar()->maximum());
}

} // namespace Vu
