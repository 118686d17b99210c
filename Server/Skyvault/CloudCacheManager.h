#pragma once

#include <boost/filesystem/path.hpp>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Vs {

class SkyvaultNodeData;
class Tasks;

/// What a cached file is in relation to the drive.
enum class CloudFileState {
    Unknown, ///< The cache doesn't have it.
    Clean,   ///< As on the drive when it was last seen.
    Dirty,   ///< Changed here.
    Uploading,
    Waiting, ///< Queued on this disk until the drive can be reached.
    Changed, ///< On the drive, by another.
    Removed  ///< From the drive, by another; the copy here is all that is left.
};

/// The cache's index, which is kept on disk and survives a kill at any point. Main thread only.
class CloudCacheManager
{
public:
    static CloudCacheManager* getInstance();
    /// What came of work in the background waits here for the main thread, which runs it when it has time.
    [[nodiscard]] static Tasks& results();

    /// Whether the cache lacks the version that the node has. A file that waits to be uploaded is never
    /// fetched over.
    [[nodiscard]] bool downloadRequired(const SkyvaultNodeData* node) const;

    CloudFileState state(const boost::filesystem::path& file) const;
    /// The identifier of a file in the cache, so that a document whose path lies there, a recovered one too,
    /// is known to be of the drive; empty for others.
    std::string identifier(const boost::filesystem::path& file) const;
    /// For the person: who saved a newer version to the drive, and when; empty if nobody is known to have.
    std::wstring changedText(const boost::filesystem::path& file) const;
    /// Files that wait to be uploaded or are on their way, the oldest first.
    std::vector<boost::filesystem::path> waiting() const;
    /// Uploads what waits, as far as the drive can be reached. Called at each sign-in and by a timer.
    void uploadWaiting();
    /// Asks the drive whether another changed or removed the files, in the background, one after the other so
    /// that what a person asks for comes in between; CloudEventSite hears of it. Nothing without a session.
    void refresh(const std::vector<boost::filesystem::path>& files);
    /// Whether the file was gone from the drive when it was last asked.
    [[nodiscard]] bool isRemoved(const boost::filesystem::path& file) const;

private:
    CloudCacheManager();
    ~CloudCacheManager();
    struct Data;
    std::unique_ptr<Data> m_data;
};

} // namespace Vs
