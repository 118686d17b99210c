#pragma once

#include "Server/DataModel/Selection/SelectionSet.h"
#include "UI/Base/Session/SessionEvents.h"

#include <QItemSelection>

#include <vector>

class QTreeView;

namespace Vu {

class AssetSession;
class BrowserModel;
class SelectionCommandInput;

/// Keeps the selected rows of the browser and the session's selection in sync, whoever changes it; while a
/// tool takes the clicks, its inputs' content is marked instead. A face, an edge or a vertex has no row, so
/// none is marked for it.
class BrowserMarks : private Vs::SelectionSetSite, private SessionEventSite
{
public:
    /// Neither is owned; both outlive the marks.
    BrowserMarks(QTreeView* tree, BrowserModel* model);
    ~BrowserMarks() override;

    /// The session of the model's asset; null for none.
    void follow(AssetSession* session);
    AssetSession* session() const { return m_session; }
    /// The input of the running tool that takes the clicks; null if clicks select.
    SelectionCommandInput* toolInput() const;
    /// Marks the session's selection. `reveal` says whether to scroll to a single row.
    void mark(bool reveal);
    /// Call whenever rows have been added: marks those of them that are selected.
    void rowsCame(const QModelIndex& parent, int first, int last);
    /// Whether the marks are changing because of the selection, and not by the user.
    bool isMarking() const { return m_busy; }
    /// Selects what the user has marked.
    void select(const std::vector<Vs::StrongRef<Vs::Selection>>& selections);

private:
    void selectionSetChanged() override;
    void sessionClosed(SessionEvent* event) override;
    void update(bool reveal);

    /// The selection when it was last marked, and its rows since.
    struct Known
    {
        std::vector<Vs::StrongRef<Vs::Selection>> selections;
        QItemSelection rows;
    };

    QTreeView* m_tree;
    BrowserModel* m_model;
    AssetSession* m_session = nullptr;
    bool m_busy = false;
    Known m_known;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
