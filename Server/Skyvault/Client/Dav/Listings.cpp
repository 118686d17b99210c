#include "Server/Skyvault/Client/Dav/Listings.h"

#include <algorithm>

namespace Vs::Cloud {

namespace {

// Reading a shorter listing takes no longer than asking whether it has changed.
constexpr size_t kLeastEntries = 100;
constexpr size_t kMostListings = 4;

} // namespace

DriveResult Listings::list(Session& session, const std::string& folder, std::vector<DriveEntry>& entries,
                           const DriveWatch& watch)
{
    const auto kept = std::find_if(m_kept.begin(), m_kept.end(),
                                   [&](const Kept& each) { return each.folder.path == folder; });
    if (kept != m_kept.end()) {
        DriveEntry now;
        if (session.find(folder, now).isOk() && now.isFolder && now.etag == kept->folder.etag) {
            entries = kept->entries;
            return {};
        }
        m_kept.erase(kept);
    }
    DriveEntry itself;
    DriveResult result = session.list(folder, entries, watch, Session::Names::OfUsers, &itself);
    if (result.isOk() && session.service.foldersHaveEtags && !itself.etag.empty() &&
        entries.size() >= kLeastEntries) {
        m_kept.insert(m_kept.begin(), {itself, entries});
        m_kept.resize(std::min(m_kept.size(), kMostListings));
    }
    return result;
}

} // namespace Vs::Cloud
