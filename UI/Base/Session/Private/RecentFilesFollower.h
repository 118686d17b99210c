#pragma once

#include "Server/DataModel/DocumentEvents.h"
#include "UI/Base/Session/RecentDocumentMgr.h"

namespace Vu {

/// Updates RecentPaths::files from RecentDocumentMgr and the foreign files of opened documents.
class RecentFilesFollower : private RecentDocumentEventSite, private Vs::DocumentEventSite
{
public:
    RecentFilesFollower();

private:
    void recentDocumentsChanged() override {}
    void recentDocumentAdded(const std::wstring& path) override;
    void recentDocumentRemoved(const std::wstring& path) override;
    void recentDocumentsCleared() override;
    void documentOpened(Vs::DocumentEvent* event) override;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
