#include "UI/Base/Window/HotKeys.h"

#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Window/KeyTable.h"

#include <QAction>
#include <QWidget>

#include <map>

namespace Vu {

HotKeys::HotKeys(QWidget* window, std::function<void(CommandDefinition*)> run)
    : QObject(window), m_window(window), m_run(std::move(run))
{
    connect(KeyTable::get(), &KeyTable::changed, this, &HotKeys::bind);
    bind();
}

void HotKeys::add(QWidget* window, const QKeySequence& key, std::function<void()> run)
{
    auto* action = new QAction(window);
    action->setShortcut(key);
    connect(action, &QAction::triggered, window, std::move(run));
    window->addAction(action);
}

void HotKeys::bind()
{
    qDeleteAll(m_actions);
    m_actions.clear();
    std::map<QKeySequence, QAction*> bound;
    for (CommandDefinition* definition : CommandDefinitionMgr::get()->commandDefinitions()) {
        const bool always = definition->info()->hotkey().mode() == HotKeyBinding::EHotKeyMode::Always;
        for (const QKeySequence& key : KeyTable::get()->keysOf(*definition)) {
            QAction*& action = bound[key];
            if (!action) {
                action = new QAction(this);
                action->setShortcut(key);
                action->setShortcutContext(always ? Qt::ApplicationShortcut : Qt::WindowShortcut);
                m_window->addAction(action);
                m_actions << action;
            }
            connect(action, &QAction::triggered, this, [this, definition] { m_run(definition); });
        }
    }
}

} // namespace Vu
