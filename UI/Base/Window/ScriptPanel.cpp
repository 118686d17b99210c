#include "UI/Base/Window/ScriptPanel.h"

#include "Server/Base/TranscriptMgr.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/Info.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/AreaContents.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Program/WorksMeanwhile.h"
#include "UI/Base/Window/Accessible.h"
#include "UI/Base/Window/Glyph.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/QtIcon.h"
#include "UI/Base/Window/ScriptEdit.h"
#include "UI/Base/Window/ScriptText.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/Window/Told.h"

#include <QBoxLayout>
#include <QFileInfo>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

#include <algorithm>
#include <set>

namespace Vu {
namespace {

const AreaContents kScript(
    "ScriptPanel", [](QWidget* parent) { return new ScriptPanel(parent); },
    [] { return localized("AreaScriptPanel", "Script"); });

constexpr int kButtonIcon = 18;

std::set<const ScriptPanel*>& panels()
{
    static std::set<const ScriptPanel*> all;
    return all;
}

bool isSeen()
{
    return std::any_of(panels().begin(), panels().end(),
                       [](const ScriptPanel* panel) { return panel->isVisible(); });
}

void waitAtPanel(const std::function<bool()>& over)
{
    while (!over() && isSeen())
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

} // namespace

ScriptPanel::ScriptPanel(QWidget* parent)
    : QWidget(parent),
      m_tools(new QWidget(this)),
      m_file(PlainText::label(this)),
      m_state(PlainText::label(this)),
      m_clash(new QWidget(this)),
      m_edit(new ScriptEdit(this))
{
    setObjectName(QStringLiteral("scriptPanel"));
    setProperty(kWorksMeanwhile, true);
    Accessible::menus(m_edit);
    auto* tools = new QHBoxLayout(m_tools);
    tools->setContentsMargins(kMargin / 2, kMargin / 2, kMargin / 2, 0);
    tools->setSpacing(0);
    addFile(L"OpenDocumentCommand", "ScriptOpen", "Open", Qt::CTRL | Qt::Key_O, &ScriptPanel::open);
    m_save = addFile(L"SaveDocumentCommand", "ScriptSave", "Save", Qt::CTRL | Qt::Key_S, &ScriptPanel::save);
    tools->addSpacing(kMargin);
    m_runs = {
        add(Glyph::Run, "ScriptContinue", "Continue", Qt::Key_F5, &ScriptPanel::run),
        add(Glyph::StepOver, "ScriptOver", "Step Over", Qt::Key_F10, &ScriptPanel::over),
        add(Glyph::StepInto, "ScriptInto", "Step Into", Qt::Key_F11, &ScriptPanel::into),
        add(Glyph::StepOut, "ScriptOut", "Step Out", Qt::SHIFT | Qt::Key_F11, &ScriptPanel::out),
        add(Glyph::RunToLine, "ScriptToCursor", "Run to Cursor", Qt::CTRL | Qt::Key_F10,
            &ScriptPanel::toCursor),
    };
    tools->addSpacing(kMargin);
    add(Glyph::Restart, "ScriptRestart", "Restart", Qt::CTRL | Qt::SHIFT | Qt::Key_F5, &ScriptPanel::restart);
    m_stop = add(Glyph::Stop, "ScriptStop", "Stop", Qt::SHIFT | Qt::Key_F5, &ScriptPanel::stop);
    tools->addStretch(1);

    auto* clash = new QVBoxLayout(m_clash);
    clash->setContentsMargins(kMargin, 0, kMargin, kMargin / 2);
    auto* question =
        PlainText::label(m_clash, told("ScriptClash", "The file has changed, and so has the text here."));
    question->setWordWrap(true);
    clash->addWidget(question);
    auto* choices = new QHBoxLayout;
    const auto choice = [&](const char* key, const char* english, auto slot) {
        auto* button = new QPushButton(told(key, english), m_clash);
        button->setObjectName(QLatin1String(key));
        connect(button, &QPushButton::clicked, this, slot);
        choices->addWidget(button);
    };
    choice("ScriptReload", "Take the File", [] { ScriptText::get()->reload(); });
    choice("ScriptOverwrite", "Keep This Text", [] { static_cast<void>(ScriptText::get()->save(true)); });
    clash->addLayout(choices);

    for (QLabel* label : {m_file, m_state}) {
        label->setContentsMargins(kMargin, 1, kMargin, 1);
        // A long name must not widen the panel.
        label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    }
    m_file->setObjectName(QStringLiteral("scriptFile"));
    m_state->setObjectName(QStringLiteral("scriptState"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_tools);
    column->addWidget(m_file);
    column->addWidget(m_clash);
    column->addWidget(m_edit, 1);
    column->addWidget(m_state);
    setFocusProxy(m_edit);

    panels().insert(this);
    connect(this, &QObject::destroyed, [this] { panels().erase(this); });
    Vs::ScriptDebugger::get()->panel({&isSeen, &waitAtPanel});
    connect(ScriptText::get(), &ScriptText::changed, this, [this] { showState(); });
    showState();
}

QToolButton* ScriptPanel::add(Glyph glyph, const char* key, const char* english, QKeyCombination keys,
                              void (ScriptPanel::*slot)())
{
    auto* button = new QToolButton(m_tools);
    button->setObjectName(QLatin1String(key));
    button->setAutoRaise(true);
    button->setIcon(glyphIcon(glyph));
    button->setIconSize({kButtonIcon, kButtonIcon});
    button->setAccessibleName(told(key, english));
    PlainText::setTooltip(button, told(key, english) + QStringLiteral(" (") +
                                      QKeySequence(keys).toString(QKeySequence::NativeText) +
                                      QLatin1Char(')'));
    connect(button, &QToolButton::clicked, this, slot);
    m_tools->layout()->addWidget(button);
    m_buttons.push_back({button, keys, slot});
    return button;
}

/// With the picture of the command that does the like with documents.
QToolButton* ScriptPanel::addFile(const wchar_t* command, const char* key, const char* english,
                                  QKeyCombination keys, void (ScriptPanel::*slot)())
{
    QToolButton* button = add(Glyph::Run, key, english, keys, slot);
    if (CommandDefinition* like = CommandDefinitionMgr::get()->findCommandDefinitionById(command))
        button->setIcon(iconOf(like->info()->icon()));
    return button;
}

/// The panel's keys are its own, also where the window has others for the same.
bool ScriptPanel::event(QEvent* event)
{
    if (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress)
        return QWidget::event(event);
    const auto* pressed = static_cast<QKeyEvent*>(event);
    const QKeyCombination keys = pressed->keyCombination();
    const auto found = std::find_if(m_buttons.begin(), m_buttons.end(),
                                    [&](const Button& each) { return each.keys == keys; });
    if (found == m_buttons.end() && keys != QKeyCombination(Qt::Key_F9))
        return QWidget::event(event);
    event->accept();
    if (event->type() == QEvent::ShortcutOverride)
        return true;
    if (found == m_buttons.end())
        breakPoint();
    else if (found->button->isEnabled())
        (this->*found->slot)();
    return true;
}

void ScriptPanel::open()
{
    std::wstring path;
    if (FileDialog::getFilenameForOpen(L"Scripts and Transcripts (*.txt *.py)", path, {}))
        static_cast<void>(Vs::ScriptDebugger::get()->load(path)); // The button is off while one runs.
}

void ScriptPanel::save()
{
    static_cast<void>(ScriptText::get()->save()); // The user was told.
}

void ScriptPanel::go(Vs::ScriptGo how, int line)
{
    if (!ScriptText::get()->save())
        return;
    Vs::ScriptDebugger* debugger = Vs::ScriptDebugger::get();
    if (debugger->running())
        debugger->go(how, line);
    else
        Application::get()->deferredTasks()->post([=] { debugger->go(how, line); });
}

void ScriptPanel::toCursor()
{
    go(Vs::ScriptGo::ToLine, m_edit->cursorLine());
}

void ScriptPanel::restart()
{
    Vs::ScriptDebugger* debugger = Vs::ScriptDebugger::get();
    if (!ScriptText::get()->save())
        return;
    debugger->stop();
    // One that is being stopped ends first.
    Application::get()->deferredTasks()->post([=] {
        debugger->rewind();
        debugger->go(Vs::ScriptGo::Continue);
    });
}

void ScriptPanel::stop()
{
    Vs::ScriptDebugger::get()->stop();
}

void ScriptPanel::breakPoint()
{
    m_edit->toggleBreakPoint(m_edit->cursorLine());
}

void ScriptPanel::showState()
{
    const ScriptText& text = *ScriptText::get();
    const Vs::ScriptDebugger& debugger = *Vs::ScriptDebugger::get();
    const Vs::ScriptDebugInfo& info = *Vs::TranscriptMgr::get()->scriptDebugInfo();
    const QString path = QString::fromStdWString(text.path());
    const bool loaded = !path.isEmpty();
    m_file->setText((text.modified() ? QStringLiteral("\u2022 ") : QString()) +
                    (loaded ? QFileInfo(path).fileName() : told("ScriptNone", "No script is loaded.")));
    PlainText::setTooltip(m_file, path);
    m_clash->setVisible(text.clashes());
    m_save->setEnabled(loaded && (text.modified() || text.missing()));
    m_buttons.front().button->setEnabled(!debugger.running());
    const bool goes = loaded && !text.clashes() && (!debugger.running() || debugger.waits());
    for (QToolButton* button : m_runs)
        button->setEnabled(goes);
    const bool stands = info.stepLine() > 0 && info.stepLine() < info.scriptLines();
    m_stop->setEnabled(debugger.running() || stands);

    const std::wstring line = std::to_wstring(info.stepLine() + 1);
    std::wstring state;
    if (!loaded)
        state = {};
    else if (text.missing())
        state = localized("ScriptMissing", "The file can't be read.");
    else if (debugger.running() && !debugger.waits())
        state = localized("ScriptRuns", "Running");
    else if (stands && !debugger.running() && Vs::TranscriptMgr::typeOf(text.path()) == Vs::kPythonTranscript)
        state = localizedFormat("ScriptStopped", "Stopped at line %1%", line); // It can't go on from there.
    else if (debugger.waits() || stands)
        state = localizedFormat("ScriptStands", "Stands before line %1%", line);
    else
        state = info.stepLine() > 0 ? localized("ScriptAtEnd", "At the end")
                                    : localized("ScriptAtStart", "At the start");
    m_state->setText(QString::fromStdWString(state));
    m_edit->showState();
}

} // namespace Vu
