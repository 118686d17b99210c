#pragma once

#include "Server/Base/Event.h"
#include "Server/Base/OptionGroup.h"

#include <string>
#include <vector>

namespace Vu {

class RecentPathsEventSite : public Vs::EventSite
{
public:
    virtual void recentPathsChanged() = 0;
};

/// Recently used paths for one purpose, the newest first; pinned ones stay. Kept among the user's options, in
/// a group of its own. Main thread only.
class RecentPaths : public Vs::EventSource<RecentPathsEventSite>
{
public:
    /// Of those that aren't pinned, and of those that are.
    static constexpr size_t kMaximum = 60;

    struct Entry
    {
        std::wstring path; ///< From the root.
        bool isPinned = false;
        bool operator==(const Entry&) const = default;
    };

    /// Files that were opened or saved, of every kind that can be opened. Documents are added and removed
    /// with RecentDocumentMgr's list, which has only native ones, and fewer of them.
    static RecentPaths& files();
    /// Scripts and transcripts that were run or recorded.
    static RecentPaths& scripts();

    /// The pinned ones before the others.
    [[nodiscard]] const std::vector<Entry>& entries();
    /// The path becomes the newest; one that is pinned stays so. An empty path changes nothing.
    void add(const std::wstring& path);
    /// Unknown paths change nothing here and in the following.
    void remove(const std::wstring& path);
    void pin(const std::wstring& path, bool value);
    /// Removes what isn't pinned.
    void clear();

private:
    explicit RecentPaths(const char* group) : m_store(group) {}
    void read();
    void write();
    std::vector<Entry>::iterator find(const std::wstring& path);

    Vs::OptionGroup m_store;
    std::vector<Entry> m_entries;
    bool m_read = false;
};

} // namespace Vu
