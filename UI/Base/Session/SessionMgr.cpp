#include "UI/Base/Session/SessionMgr.h"

#include "Server/Base/Require.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/Clipboard.h"
#include "UI/Base/Session/DocumentOrder.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/Environment.h"
#include "UI/Base/View/ViewMgr.h"

#include <iterator>

namespace Vu {

namespace {

// What is shown is what its document is opened with again, and asked about.
void noteActive(const AssetSession* active)
{
    Vs::Asset* asset = active ? active->asset() : nullptr;
    Vs::DocumentMgr::get()->activeAsset(asset);
    if (asset)
        asset->document()->activeAsset(asset);
}

} // namespace

SessionMgr* SessionMgr::get()
{
    // Never destroyed: documents that are still open when the process ends may tell it that they close.
    static auto* const manager = new SessionMgr;
    return manager;
}

SessionMgr::SessionMgr() : m_clipboard(std::make_unique<Clipboard>())
{
    m_subscriptions.add(Vs::DocumentEventSource::get(), this);
    m_subscriptions.add(Vs::AssetEventSource::get(), this);
}

SessionMgr::~SessionMgr() = default;

AssetSession* SessionMgr::getOpenAssetSession(const Vs::Asset* asset) const
{
    const auto found = m_ofAsset.find(asset);
    return found == m_ofAsset.end() ? nullptr : found->second->get();
}

AssetSession* SessionMgr::assetSession(Vs::Asset* asset)
{
    Vs::assertMainThread();
    if (AssetSession* open = getOpenAssetSession(asset))
        return open;
    if (!asset || !asset->isVisible() || !asset->fullyInitialized())
        return nullptr;
    m_assets.push_back(std::make_unique<AssetSession>(asset, documentSession(asset->document())));
    AssetSession* made = m_assets.back().get();
    m_ofAsset[asset] = std::prev(m_assets.end());
    // Whoever is notified of the new command manager finds the session already registered.
    made->m_commands = std::make_unique<CommandMgr>(made);
    SessionEvent event(made);
    SessionEventSource::get()->fireSessionCreated(&event);
    return made;
}

std::vector<AssetSession*> SessionMgr::assetSessions() const
{
    std::vector<AssetSession*> sessions;
    for (const auto& session : m_assets)
        sessions.push_back(session.get());
    return sessions;
}

DocumentSession* SessionMgr::documentSession(Vs::Document* document)
{
    Vs::assertMainThread();
    if (!document)
        return nullptr;
    if (const auto found = m_ofDocument.find(document); found != m_ofDocument.end())
        return found->second->get();
    m_documents.push_back(std::make_unique<DocumentSession>(document));
    DocumentSession* made = m_documents.back().get();
    m_ofDocument[document] = std::prev(m_documents.end());
    m_known.insert(made);
    made->firstSave(!document->isOnDisk());
    return made;
}

DocumentSession* SessionMgr::documentSession(const std::wstring& pathOrName)
{
    Vs::Document* document = Vs::DocumentMgr::get()->bestDocument(pathOrName);
    return isLeaving(document) ? nullptr : documentSession(document);
}

std::vector<DocumentSession*> SessionMgr::documentSessions() const
{
    std::vector<DocumentSession*> sessions;
    for (const auto& session : m_documents)
        if (!session->leaving())
            sessions.push_back(session.get());
    return sessions;
}

bool SessionMgr::isLeaving(const Vs::Document* document) const
{
    const auto found = m_ofDocument.find(document);
    return found != m_ofDocument.end() && (*found->second)->leaving();
}

bool SessionMgr::isOpen(const DocumentSession* session) const
{
    return m_known.contains(session) && !session->leaving();
}

std::vector<Vs::Document*> SessionMgr::openDocuments() const
{
    const Vs::DocumentMgr* manager = Vs::DocumentMgr::get();
    std::vector<Vs::Document*> documents;
    for (unsigned i = 0; i < manager->documents(); ++i)
        if (Vs::Document* document = manager->document(i); !isLeaving(document))
            documents.push_back(document);
    DocumentOrder::get()->sort(documents);
    return documents;
}

void SessionMgr::finishLeaving(const std::wstring& path) const
{
    Vs::DocumentMgr* manager = Vs::DocumentMgr::get();
    if (Vs::Document* document = manager->document(path); isLeaving(document))
        manager->close(document);
}

DocumentSession* SessionMgr::currentDocumentSession() const
{
    return m_current ? m_current->documentSession() : nullptr;
}

DocumentSession* SessionMgr::activeDocumentSession() const
{
    AssetSession* active = activeAssetSession();
    return active ? active->documentSession() : nullptr;
}

void SessionMgr::currentAssetSession(AssetSession* session)
{
    Vs::assertMainThread();
    Vs::require(!session || getOpenAssetSession(session->asset()) == session,
                "a session that becomes current is open");
    if (session == m_current)
        return;
    m_current = session;
    noteActive(activeAssetSession());
    SessionEvent event(session);
    SessionEventSource::get()->fireCurrentSessionChanged(&event);
}

void SessionMgr::preActivate()
{
    if (m_current)
        m_current->viewManager();
}

void SessionMgr::activate()
{
    m_active = true;
    noteActive(m_current);
}

void SessionMgr::postActivate()
{
    if (!m_active)
        return;
    SessionEvent event(m_current);
    SessionEventSource::get()->fireSessionPostActivateForAsset(&event);
    if (m_current && m_current->commandManager()->commandStack().empty())
        m_current->commandManager()->startDefaultCommand();
}

void SessionMgr::deactivate()
{
    if (!m_active)
        return;
    SessionEvent event(m_current);
    SessionEventSource::get()->fireSessionDeactivated(&event);
    m_active = false;
    noteActive(nullptr);
}

void SessionMgr::close(AssetSession* session)
{
    SessionEvent event(session, Vs::Timing::Before);
    SessionEventSource::get()->fireSessionClosed(&event);
    if (session == m_current)
        currentAssetSession(nullptr);
    const auto found = m_ofAsset.find(session->asset());
    const std::unique_ptr<AssetSession> owned = std::move(*found->second);
    m_assets.erase(found->second);
    m_ofAsset.erase(found);
}

void SessionMgr::assetClosed(Vs::AssetEvent* event)
{
    if (AssetSession* session = getOpenAssetSession(event->asset()))
        close(session);
}

void SessionMgr::documentClosed(Vs::DocumentEvent* event)
{
    // The first event removes the sessions. Later sites may have asked for them again.
    const Vs::Document* document = event->document();
    for (unsigned i = 0; i < document->assets(); ++i)
        if (AssetSession* session = getOpenAssetSession(document->asset(i)))
            close(session);
    const auto found = m_ofDocument.find(document);
    if (found == m_ofDocument.end())
        return;
    const std::unique_ptr<DocumentSession> owned = std::move(*found->second);
    m_known.erase(owned.get());
    m_documents.erase(found->second);
    m_ofDocument.erase(found);
}

} // namespace Vu
