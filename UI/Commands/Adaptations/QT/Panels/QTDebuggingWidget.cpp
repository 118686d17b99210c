#include "UI/Commands/Adaptations/QT/Panels/QTDebuggingWidget.h"

#include "Server/Base/ScriptDebugger.h"
#include "Server/Base/TranscriptMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Program/WorksMeanwhile.h"
#include "UI/Commands/Adaptations/QT/Panels/OverMainWindow.h"
#include "UI/Commands/Adaptations/QT/Panels/PanelLayout.h"
#include "UI/Commands/Adaptations/QT/Panels/QTDebugScriptTextEdit.h"
#include "UI/Commands/Transcripts/ReplayTasks.h"

#include <QCheckBox>
#include <QPushButton>

#include <boost/filesystem/operations.hpp>

namespace Vu::Commands {
namespace {

constexpr QSize kScriptSize{480, 420};

void runLater(Vs::Task* task)
{
    Application::get()->deferredTasks()->add(task);
}

/// Sends a run on that waits within its line; returns whether there is one.
bool goesOn(Vs::ScriptGo how)
{
    Vs::ScriptDebugger* debugger = Vs::ScriptDebugger::get();
    const bool waits = debugger->waits();
    if (waits)
        debugger->go(how);
    return waits;
}

} // namespace

QTShowScriptWidget::QTShowScriptWidget() : QWidget(nullptr, Qt::WindowStaysOnTopHint)
{
    setWindowTitle(told("DebugScript", "Script"));
    setProperty(kWorksMeanwhile, true);
    auto* row = new QHBoxLayout;
    row->addWidget(new QTDebugScriptTextEdit);
    putInGroup(this, told("DebugScript", "Script"), row);
    resize(kScriptSize);
    new OverMainWindow(this);
}

QTDebuggingWidget::QTDebuggingWidget(QWidget* parent) : QWidget(parent)
{
    setProperty(kWorksMeanwhile, true);
    auto* buttons = new QHBoxLayout;
    const auto add = [&](const char* key, const char* title, void (QTDebuggingWidget::*slot)()) {
        auto* button = new QPushButton(told(key, title));
        button->setObjectName(QLatin1String(key));
        connect(button, &QPushButton::clicked, this, slot);
        buttons->addWidget(button);
        return button;
    };
    m_load = add("DebugLoad", "Load", &QTDebuggingWidget::onClickLoadButton);
    add("DebugContinue", "Continue", &QTDebuggingWidget::onClickContinueButton);
    add("DebugStep", "Step", &QTDebuggingWidget::onClickStepOverButton);
    add("DebugRestart", "Restart", &QTDebuggingWidget::onClickRunButton);
    auto* script = new QCheckBox(told("DebugScript", "Script"));
    script->setObjectName(QStringLiteral("DebugScript"));
    script->setChecked(UIBaseOptionGroup::get()->showDebugScriptWidget());
    connect(script, &QCheckBox::clicked, this, &QTDebuggingWidget::onClickShowScriptCheck);

    auto* column = new QVBoxLayout;
    column->addLayout(buttons);
    column->addWidget(script);
    putInGroup(this, told("Debugging", "Debugging"), column);
}

QTDebuggingWidget::~QTDebuggingWidget() = default;

void QTDebuggingWidget::onScriptDebugInfoChanged()
{
    m_load->setDisabled(Vs::ScriptDebugger::get()->running());
}

void QTDebuggingWidget::onClickLoadButton()
{
    std::wstring path;
    if (!FileDialog::getFilenameForOpen(L"Transcript File (*.txt)", path, {}))
        return;
    Vs::ScriptDebugInfo* info = Vs::TranscriptMgr::get()->scriptDebugInfo();
    boost::system::error_code error;
    if (!boost::filesystem::exists(path, error) || !info)
        return;
    info->stepLine(0);
    info->resetBreakPoints();
    info->needToReload(true);
    info->scriptPath(path);
    info->needToReload(false);
    // Breakpoints keep their line numbers, unless the info has loaded something else.
    if (info->scriptPath() != path)
        info->removeAllBreakPoints();
}

void QTDebuggingWidget::onClickRunButton()
{
    if (Vs::ScriptDebugger::get()->waits())
        Vs::ScriptDebugger::get()->stop();
    if (Vs::ScriptDebugInfo* info = Vs::TranscriptMgr::get()->scriptDebugInfo()) {
        info->stepLine(0);
        info->resetBreakPoints();
    }
    runLater(new ReplayTextTranscriptTask);
}

void QTDebuggingWidget::onClickContinueButton()
{
    if (!goesOn(Vs::ScriptGo::Continue))
        runLater(new ReplayTextTranscriptTask);
}

void QTDebuggingWidget::onClickStepOverButton()
{
    if (!goesOn(Vs::ScriptGo::Over))
        runLater(new StepReplayTextTranscriptTask);
}

void QTDebuggingWidget::onClickShowScriptCheck(bool checked)
{
    showScript(checked);
    UIBaseOptionGroup::get()->showDebugScriptWidget(checked);
}

void QTDebuggingWidget::showScript(bool shown)
{
    if (!m_script)
        m_script = std::make_unique<QTShowScriptWidget>();
    m_script->setVisible(shown);
}

void QTDebuggingWidget::showEvent(QShowEvent*)
{
    if (UIBaseOptionGroup::get()->showDebugScriptWidget())
        showScript(true);
}

void QTDebuggingWidget::hideEvent(QHideEvent*)
{
    if (UIBaseOptionGroup::get()->showDebugScriptWidget())
        showScript(false);
}

} // namespace Vu::Commands
