#include "UI/Base/Session/Private/RecentFilesFollower.h"

#include "Server/DataModel/Document.h"
#include "Server/DataModel/Recovery/AutoSaveController.h"
#include "UI/Base/Session/RecentPaths.h"

namespace Vu {

RecentFilesFollower::RecentFilesFollower()
{
    m_subscriptions.add(RecentDocumentMgr::get(), this);
    m_subscriptions.add(Vs::DocumentEventSource::get(), this);
}

void RecentFilesFollower::recentDocumentAdded(const std::wstring& path)
{
    RecentPaths::files().add(path);
}

void RecentFilesFollower::recentDocumentRemoved(const std::wstring& path)
{
    RecentPaths::files().remove(path);
}

void RecentFilesFollower::recentDocumentsCleared()
{
    RecentPaths::files().clear();
}

void RecentFilesFollower::documentOpened(Vs::DocumentEvent* event)
{
    const std::wstring& file = event->document()->importedFrom();
    if (!Vs::AutoSaveController::isRecoveryFile(file))
        RecentPaths::files().add(file);
}

} // namespace Vu
