#include "UI/Base/Window/BrowserMarks.h"

#include "Server/CommonData/NamedViews.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SelectionCommandInput.h"
#include "UI/Base/Window/BrowserModel.h"

#include <QItemSelectionModel>
#include <QScopedValueRollback>
#include <QTreeView>

#include <algorithm>
#include <functional>
#include <iterator>

namespace Vu {
namespace {

/// A row, and what distinguishes it from its siblings.
struct Marked
{
    const void* parent;
    QModelIndex index;
    bool operator<(const Marked& other) const
    {
        return parent != other.parent ? std::less<>()(parent, other.parent) : index.row() < other.index.row();
    }
};

/// Adjacent rows as one range: each row that is drawn asks all ranges whether it's in them.
QItemSelection rangesOf(std::vector<Marked> rows)
{
    std::ranges::sort(rows, std::less<>());
    QItemSelection ranges;
    for (auto first = rows.begin(); first != rows.end();) {
        auto last = first;
        while (std::next(last) != rows.end() && std::next(last)->parent == first->parent &&
               std::next(last)->index.row() <= last->index.row() + 1)
            ++last;
        ranges.append(QItemSelectionRange(first->index, last->index));
        first = std::next(last);
    }
    return ranges;
}

/// The ranges without the rows inserted among them.
QItemSelection without(const QItemSelection& ranges, const QModelIndex& parent, int first, int last)
{
    QItemSelection left;
    for (const QItemSelectionRange& range : ranges) {
        if (range.parent() != parent || range.top() >= first || range.bottom() <= last) {
            left.append(range);
            continue;
        }
        left.append({range.topLeft(), parent.model()->index(first - 1, 0, parent)});
        left.append({parent.model()->index(last + 1, 0, parent), range.bottomRight()});
    }
    return left;
}

} // namespace

BrowserMarks::BrowserMarks(QTreeView* tree, BrowserModel* model) : m_tree(tree), m_model(model)
{
    m_subscriptions.add(SessionEventSource::get(), this);
}

BrowserMarks::~BrowserMarks()
{
    follow(nullptr);
    m_subscriptions.clear();
}

void BrowserMarks::follow(AssetSession* session)
{
    if (m_session) {
        m_session->selectionManager()->selectionSet().unsubscribe(this);
        m_session->selectionManager()->collectedSet().unsubscribe(this);
    }
    m_session = session;
    m_known = {};
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
        update(true);
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
    m_known = {};
    update(reveal);
}

// The tree keeps the selection of the others.
void BrowserMarks::rowsCame(const QModelIndex& parent, int first, int last)
{
    if (!m_session)
        return;
    Vs::SelectionMgr& manager = *m_session->selectionManager();
    const Vs::SelectionSet &selected = manager.selectionSet(), &collected = manager.collectedSet();
    const auto isMarked = [&](const Vs::SelectionSet& set, const std::string& id) {
        return !set.empty() && (set.components().has(id) || set.components().hasBelow(id));
    };
    // Iterating over everything that is marked may be less work.
    bool isMarkedAgain = static_cast<size_t>(last - first) >= selected.size() + collected.size();
    for (int row = first; row <= last && !isMarkedAgain; ++row)
        if (const Vs::Component* component = m_model->component(m_model->index(row, 0, parent)))
            isMarkedAgain = isMarked(selected, component->id) || isMarked(collected, component->id);
    if (isMarkedAgain)
        mark(false);
    else
        m_known.rows = without(m_known.rows, parent, first, last);
}

// Whenever a tool begins or ends, the marks of the session's selection disappear or come back.
void BrowserMarks::update(bool reveal)
{
    if (!m_session)
        return;
    const QScopedValueRollback<bool> busy(m_busy, true);
    std::vector<Marked> rows;
    const auto add = [&](const QModelIndex& index) {
        if (index.isValid())
            rows.push_back({m_model->parent(index).internalPointer(), index});
    };
    bool others = false;
    Vs::SelectionMgr& manager = *m_session->selectionManager();
    const bool isTool = toolInput();
    const Vs::SelectionSet& shown = isTool ? manager.collectedSet() : manager.selectionSet();
    if (!isTool && shown.size() > 1 && shown.selections() == m_known.selections) {
        m_tree->selectionModel()->select(m_known.rows, QItemSelectionModel::ClearAndSelect);
        return;
    }
    for (const auto& selection : shown.selections()) {
        const auto* logical = Vs::cast<Vs::LogicalSelection>(selection.get());
        others = others || !logical;
        if (!logical || logical->path().leaf != Vs::ObjectPath::Leaf::Component)
            continue;
        add(m_model->indexOf(logical->componentId()));
    }
    // Named views are selected only here, and their rows stay as they are.
    if (others)
        for (const QModelIndex& index : m_tree->selectionModel()->selectedIndexes())
            if (!m_model->component(index))
                add(index);
    const QItemSelection marks = rangesOf(rows);
    m_tree->selectionModel()->select(marks, QItemSelectionModel::ClearAndSelect);
    if (!isTool && !others)
        m_known = {shown.selections(), marks};
    // A row in a collapsed branch stays there.
    if (reveal && rows.size() == 1 && m_tree->visualRect(rows.front().index).isValid())
        m_tree->scrollTo(rows.front().index);
}

} // namespace Vu
