#pragma once

#include "UI/Base/SessionEvents.h"

#include <QWidget>

#include <set>
#include <string>
#include <vector>

class QTreeView;

namespace Vu {

class BrowserModel;

/// The tree of the current session's components and named views. Components that are selected in it are
/// highlighted in the views; named views are what the session has selected, for the commands of the context
/// menu. A double click looks from where a named view does.
class BrowserPanel : public QWidget, private SessionEventSite
{
public:
    explicit BrowserPanel(QWidget* parent);
    ~BrowserPanel() override;

    QTreeView* tree() const { return m_tree; }
    BrowserModel* model() const { return m_model; }

private:
    void currentSessionChanged(SessionEvent* event) override;
    void sessionPostActivateForAsset(SessionEvent* event) override;
    void show(AssetSession* session);
    void reopen();
    void highlightSelection();
    void selectNamedViews();
    void showMenu(const QPoint& place);
    void highlight(const std::vector<std::string>& ids, bool on);

    QTreeView* m_tree;
    BrowserModel* m_model;
    std::set<std::string> m_open; ///< Ids of the open branches, for after a reset.
    std::vector<std::string> m_highlighted;
};

} // namespace Vu
