#pragma once

#include "Server/Base/Event.h"

#include <memory>
#include <string>
#include <vector>

namespace Vu {

class RecentDocument : public Vs::Implements<RecentDocument>
{
public:
    RecentDocument(std::wstring path, bool isCloud) : m_path(std::move(path)), m_isCloud(isCloud) {}
    const std::wstring& path() const { return m_path; }
    bool isCloud() const { return m_isCloud; }

private:
    std::wstring m_path;
    bool m_isCloud;
};

class RecentDocumentEventSite : public Vs::EventSite
{
public:
    virtual void recentDocumentsChanged() = 0;
    // What changed; each comes before the above.
    virtual void recentDocumentAdded(const std::wstring&) {}
    virtual void recentDocumentRemoved(const std::wstring&) {}
    virtual void recentDocumentsCleared() {}
};

/// The most recently used documents; kept among the user's options.
class RecentDocumentMgr : public Vs::Implements<RecentDocumentMgr>,
                          public Vs::EventSource<RecentDocumentEventSite>
{
public:
    static constexpr int kMaximum = 20;
    static RecentDocumentMgr* get();

    /// The path becomes the newest entry, even if it is already listed.
    void add(const std::wstring& path, bool isCloud);
    /// Adds the newest entries, up to `maximum`, the newest of them last. They are this manager's and last
    /// until the list changes.
    void recentDocuments(std::vector<RecentDocument*>& documents, int maximum);
    /// Unknown paths change nothing.
    void remove(const std::wstring& path);
    /// The same, the newest first.
    std::vector<RecentDocument*> newestFirst(int maximum);
    void clearRecent();

private:
    RecentDocumentMgr() = default;
    void read();
    void write();

    std::vector<std::unique_ptr<RecentDocument>> m_documents; ///< The newest first.
    bool m_read = false;
};

} // namespace Vu
