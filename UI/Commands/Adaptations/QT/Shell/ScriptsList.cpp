#include "UI/Commands/Adaptations/QT/Shell/ScriptsList.h"

#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Window/QtIcon.h"
#include "UI/Commands/Adaptations/QT/Told.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Transcripts/ReplayTasks.h"
#include "UI/Commands/Transcripts/RunScriptCmd.h"

#include <QFileInfo>
#include <QKeyEvent>
#include <QMenu>
#include <QToolButton>

#include <algorithm>

namespace Vu::Commands {
namespace {

constexpr size_t kMostRows = 6;

bool isScript(const std::wstring& path)
{
    return path.ends_with(L".py");
}

void run(const std::wstring& path)
{
    if (!isScript(path)) {
        RecentPaths::scripts().add(path);
        Application::get()->deferredTasks()->add(new ReplayTranscriptTask(path));
        return;
    }
    CommandContext context = CommandContext::activeContext();
    context.addArgument(CommandContext::pathArgumentName(), path);
    CommandMgr::get()->executeLater(RunScriptCmdDef::info()->key(), context);
}

} // namespace

ScriptsList::ScriptsList(QWidget* parent) : HomeList(told("HomeScripts", "Scripts and recordings"), parent)
{
    addCommands("HomeScripts");
    fill();
    RecentPaths::scripts().subscribe(this);
}

ScriptsList::~ScriptsList()
{
    RecentPaths::scripts().unsubscribe(this);
}

void ScriptsList::fill()
{
    for (const auto& [row, path] : m_used) {
        row->hide();
        row->deleteLater();
    }
    m_used.clear();
    const std::vector<RecentPaths::Entry>& entries = RecentPaths::scripts().entries();
    for (size_t i = 0; i < std::min(entries.size(), kMostRows); ++i) {
        const std::wstring path = entries[i].path;
        const QString shown = QString::fromStdWString(path);
        QToolButton* row =
            addRow(QFileInfo(shown).fileName(), shown,
                   iconOf(isScript(path) ? Resources::RunScript() : Resources::ReplayTranscript()),
                   [path] { run(path); });
        row->installEventFilter(this);
        row->setContextMenuPolicy(Qt::ActionsContextMenu);
        auto* remove = new QAction(told("HomeRemove", "Remove from this list"), row);
        connect(remove, &QAction::triggered, this, [path] { RecentPaths::scripts().remove(path); });
        row->addAction(remove);
        m_used.emplace_back(row, path);
    }
}

/// Return runs, as with the tiles, and Delete removes.
bool ScriptsList::eventFilter(QObject* row, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return HomeList::eventFilter(row, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    const auto found =
        std::ranges::find(m_used, row, [](const auto& each) -> QObject* { return each.first; });
    if (found == m_used.end() || (key != Qt::Key_Delete && key != Qt::Key_Return && key != Qt::Key_Enter))
        return HomeList::eventFilter(row, event);
    if (key == Qt::Key_Delete)
        RecentPaths::scripts().remove(std::wstring(found->second));
    else
        found->first->click();
    return true;
}

} // namespace Vu::Commands
