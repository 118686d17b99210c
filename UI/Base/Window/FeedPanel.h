#pragma once

#include "UI/Base/Session/DesignFeed.h"

#include <QTimer>
#include <QWidget>

#include <vector>

class QLabel;
class QListWidget;

namespace Vu {

/// The feed of the document shown: what was done, by which command and when, the newest first. Undone steps
/// are grey, above the present state. A double click, Enter or the menu goes back or forward to a step.
class FeedPanel : public QWidget, private FeedEventSite
{
public:
    explicit FeedPanel(QWidget* parent);

    QListWidget* list() const { return m_list; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void feedChanged() override;
    void refresh();
    void run(int row);
    void showMenu(const QPoint& place);

    QListWidget* m_list;
    QLabel* m_nothing;
    std::vector<FeedEntry> m_entries; ///< As the rows show them.
    QTimer m_soon;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
