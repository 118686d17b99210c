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
    /// The input of the running tool that takes the clicks; null where clicks select.
    SelectionCommandInput* toolInput() const;
    /// Marks what the session has selected. `reveal` tells whether a single row is scrolled to.
    void mark(bool reveal);
    /// To be called whenever rows have come: marks those of them that are selected.
    void rowsCame(const QModelIndex& parent, int first, int last);
    /// Whether marks are changing because the selection has, and not by a person's hand.
    bool isMarking() const { return m_busy; }
    /// Selects what a person has marked.
    void select(const std::vector<Vs::StrongRef<Vs::Selection>>& selections);

private:
    void selectionSetChanged() override;
    void sessionClosed(SessionEvent* event) override;
    void update(bool reveal);

    /// What was selected when it was marked last, and its rows since.
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
