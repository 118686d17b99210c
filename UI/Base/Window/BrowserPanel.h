#pragma once

#include "UI/Base/Session/BrowserManager.h"
#include "UI/Base/Session/SessionEvents.h"

#include <QWidget>

#include <memory>
#include <set>
#include <string>

class QLineEdit;
class QTreeView;

namespace Vs {
class Component;
}

namespace Vu {

class BrowserMarks;
class BrowserModel;
class SelectionCommandInput;

/// The tree of the current session's components and named views, with a filter field above it. Its selection
/// is the session's, used by the commands of the context menu and highlighted in the views. A double click
/// edits a component by itself, as a bar above the tree then shows, or looks from a named view.
class BrowserPanel : public QWidget, public Browser, private SessionEventSite
{
public:
    explicit BrowserPanel(QWidget* parent);
    ~BrowserPanel() override;

    QTreeView* tree() const { return m_tree; }
    BrowserModel* model() const { return m_model; }
    QLineEdit* filter() const { return m_filter; }

    const AssetSession* assetSession() const override;
    void createAndDisplay(const Vs::StrongRef<Vs::LogicalSelection>& selection) override;

private:
    void setUpFilter();
    void setUpTree();
    /// Keeps branches open while rows come and go.
    void followRows();
    void followClicks();
    void currentSessionChanged(SessionEvent* event) override;
    void sessionPostActivateForAsset(SessionEvent* event) override;
    void show(AssetSession* session);
    void reopen();
    void showFound();
    /// Handles a key in the filter field; false for those that the field itself uses.
    bool pressInFilter(int key);
    void reopenBelow(const QModelIndex& parent, int first, int last);
    void select();
    /// A click on a row while a tool takes the clicks.
    void pick(const QModelIndex& index, SelectionCommandInput& input);
    void rename(const QModelIndex& index, const std::wstring& newName);
    void edit(const QModelIndex& index, const Vs::Component& component);
    void removeSelected();
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showMenu(const QPoint& place);

    QLineEdit* m_filter;
    QTreeView* m_tree;
    BrowserModel* m_model;
    std::unique_ptr<BrowserMarks> m_marks;
    bool m_checked = false;       ///< The click was on a check mark.
    bool m_displaying = false;    ///< The mark being set doesn't select anything.
    std::set<std::string> m_open; ///< Ids of the expanded branches, for when they come back.
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
