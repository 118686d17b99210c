#include "UI/Base/Window/BrowserMarks.h"

#include "Server/CommonData/NamedViews.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SelectionCommandInput.h"
#include "UI/Base/Window/BrowserModel.h"

#include <QItemSelectionModel>
#include <QScopedValueRollback>
#include <QTreeView>

#include <algorithm>

namespace Vu {

BrowserMarks::BrowserMarks(QTreeView* tree, BrowserModel* model) : m_tree(tree), m_model(model)
{
    SessionEventSource::get()->subscribe(this);
}

BrowserMarks::~BrowserMarks()
{
    follow(nullptr);
    SessionEventSource::get()->unsubscribe(this);
}

void BrowserMarks::follow(AssetSession* session)
{
    if (m_session) {
        m_session->selectionManager()->selectionSet().unsubscribe(this);
        m_session->selectionManager()->collectedSet().unsubscribe(this);
    }
    m_session = session;
    if (!m_session)
        return;
    m_session->selectionManager()->selectionSet().subscribe(this);
    m_session->selectionManager()->collectedSet().subscribe(this);
    mark(true);
}

void BrowserMarks::sessionClosed(SessionEvent* event)
{
    if (event->assetSession() == m_session)
        follow(nullptr);
}

void BrowserMarks::selectionSetChanged()
{
    if (!m_busy)
        mark(true);
}

void BrowserMarks::select(const std::vector<Vs::StrongRef<Vs::Selection>>& selections)
{
    const QScopedValueRollback<bool> busy(m_busy, true);
    m_session->selectionManager()->selectionSet().replace(selections);
}

SelectionCommandInput* BrowserMarks::toolInput() const
{
    const CommandMgr* commands = m_session ? m_session->commandManager() : nullptr;
    SelectionCommandInput* input =
        commands ? SelectionCommandInput::currentOf(commands->activeCommand()) : nullptr;
    return input && !input->replacesCurrentSelection() ? input : nullptr;
}

void BrowserMarks::mark(bool reveal)
{
    if (!m_session)
        return;
    const QScopedValueRollback<bool> busy(m_busy, true);
    QItemSelection marks;
    bool others = false;
    Vs::SelectionMgr& manager = *m_session->selectionManager();
    const Vs::SelectionSet& shown = toolInput() ? manager.collectedSet() : manager.selectionSet();
    for (const auto& selection : shown.selections()) {
        const auto* logical = Vs::cast<Vs::LogicalSelection>(selection.get());
        others = others || !logical;
        if (!logical || logical->path().leaf != Vs::ObjectPath::Leaf::Component)
            continue;
        if (const QModelIndex index = m_model->indexOf(logical->componentId()); index.isValid())
            marks.select(index, index);
    }
    // Named views are selected here alone, and their rows stay as they are.
    for (const QModelIndex& index : m_tree->selectionModel()->selectedIndexes())
        if (others && !m_model->component(index))
            marks.select(index, index);
    m_tree->selectionModel()->select(marks, QItemSelectionModel::ClearAndSelect);
    const QModelIndexList rows = marks.indexes();
    // A row in a branch that is closed stays there.
    if (reveal && rows.size() == 1 && m_tree->visualRect(rows.front()).isValid())
        m_tree->scrollTo(rows.front());
}

} // namespace Vu
