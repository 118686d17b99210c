#pragma once

#include "UI/Base/RecentDocumentMgr.h"

#include <QWidget>

class QLabel;
class QListWidget;

namespace Vu {

/// The start page: how to begin, and the documents that were used last.
class HomePage : public QWidget, private RecentDocumentEventSite
{
public:
    explicit HomePage(QWidget* parent);
    ~HomePage() override;

    void refresh();
    QListWidget* recent() const { return m_recent; }

private:
    void recentDocumentsChanged() override { refresh(); }

    QListWidget* m_recent;
    QLabel* m_recentTitle;
};

/// Opens files in the window, one command for each, as a drop on it does.
void openDroppedFiles(const std::vector<std::wstring>& paths);

} // namespace Vu
