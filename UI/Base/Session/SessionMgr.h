#pragma once

#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/DocumentEvents.h"
#include "UI/Base/Session/SessionEvents.h"

#include <list>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Vs {
class Asset;
class Document;
} // namespace Vs

namespace Vu {

class AssetSession;
class Clipboard;
class DocumentSession;

/// All sessions: what the user interface keeps about open documents and assets. A session is made at first
/// use and destroyed with its document or asset. Main thread only.
///
/// The current asset session is the one that the asset shell works on; it is the active one as well between
/// `activate` and `deactivate`, that is, while that shell is on top.
class SessionMgr : public Vs::Implements<SessionMgr, Vs::Object>,
                   private Vs::DocumentEventSite,
                   private Vs::AssetEventSite
{
public:
    static SessionMgr* get();

    /// Made on demand; null for null, for hidden assets and for those whose content isn't complete yet.
    AssetSession* assetSession(Vs::Asset* asset);
    /// Only a session that exists already.
    AssetSession* getOpenAssetSession(const Vs::Asset* asset) const;
    /// In the order in which they were made.
    std::vector<AssetSession*> assetSessions() const;

    /// Made on demand; null for null.
    DocumentSession* documentSession(Vs::Document* document);
    /// Of the open document with that path or display name; null if there is none, or if it is leaving.
    DocumentSession* documentSession(const std::wstring& pathOrName);

    /// A document that the user has closed may still be leaving (DocumentSession::leaving). It is in neither
    /// of these lists.
    std::vector<DocumentSession*> documentSessions() const;
    std::vector<Vs::Document*> openDocuments() const;
    bool isLeaving(const Vs::Document* document) const;
    /// Whether it is in the list of sessions; one that is gone isn't.
    bool isOpen(const DocumentSession* session) const;
    /// Closes a document of that path that is leaving at once, so that the file can be opened as it is on the
    /// disk.
    void finishLeaving(const std::wstring& path) const;

    AssetSession* currentAssetSession() const { return m_current; }
    void currentAssetSession(AssetSession* session);
    DocumentSession* currentDocumentSession() const;

    AssetSession* activeAssetSession() const { return m_active ? m_current : nullptr; }
    DocumentSession* activeDocumentSession() const;

    /// What can be pasted in any session. Never null.
    Clipboard* globalClipboard() const { return m_clipboard.get(); }

    /// The steps of bringing the current session up, in the order in which a shell calls them.
    void preActivate();
    void activate();
    void postActivate();
    void deactivate();

private:
    SessionMgr();
    ~SessionMgr() override;
    void documentClosed(Vs::DocumentEvent* event) override;
    void assetClosed(Vs::AssetEvent* event) override;
    void close(AssetSession* session);

    using DocumentSessions = std::list<std::unique_ptr<DocumentSession>>;
    using AssetSessions = std::list<std::unique_ptr<AssetSession>>;
    DocumentSessions m_documents;
    AssetSessions m_assets;
    // The same, by what they are of.
    std::unordered_map<const Vs::Document*, DocumentSessions::iterator> m_ofDocument;
    std::unordered_map<const Vs::Asset*, AssetSessions::iterator> m_ofAsset;
    std::unordered_set<const DocumentSession*> m_known; ///< All of m_documents.
    std::unique_ptr<Clipboard> m_clipboard;
    AssetSession* m_current = nullptr;
    bool m_active = false;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
