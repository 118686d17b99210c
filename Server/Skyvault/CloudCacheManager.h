#pragma once

#include <boost/filesystem/path.hpp>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Vs {

class SkyvaultNodeData;
class Tasks;

/// The state of a cached file relative to the drive.
enum class CloudFileState {
    Unknown, ///< Not in the cache.
    Clean,   ///< As last seen on the drive.
    Dirty,   ///< Changed locally.
    Uploading,
    Waiting, ///< Queued on this disk until the drive can be reached.
    Changed, ///< On the drive, by somebody else.
    Removed  ///< From the drive, by somebody else; the local copy is all that is left.
};

/// The index of the cache, which is kept on disk and survives a kill at any point. Main thread only.
class CloudCacheManager
{
public:
    static CloudCacheManager* getInstance();
    /// Results of background work are queued here for the main thread, which runs them when it has time.
    [[nodiscard]] static Tasks& results();

    /// Whether the cache lacks the node's version. A file that is waiting to be uploaded is never overwritten
    /// by a download.
    [[nodiscard]] bool downloadRequired(const SkyvaultNodeData* node) const;

    CloudFileState state(const boost::filesystem::path& file) const;
    /// The identifier of a file in the cache, by which a document with a path there, even a recovered one, is
    /// recognized as belonging to the drive; empty for other files.
    std::string identifier(const boost::filesystem::path& file) const;
    /// Files waiting to be uploaded or being uploaded, oldest first.
    std::vector<boost::filesystem::path> waiting() const;
    /// Uploads what is waiting, as far as the drive can be reached. Called at each sign-in and by a timer.
    void uploadWaiting();
    /// Asks the drive in the background whether somebody else changed or removed the files, one after the
    /// other so that the user's own requests come in between; CloudEventSite is notified. Does nothing
    /// without a session.
    void refresh(const std::vector<boost::filesystem::path>& files);
    /// Whether the file was gone from the drive when last checked.
    [[nodiscard]] bool isRemoved(const boost::filesystem::path& file) const;

private:
    CloudCacheManager();
    ~CloudCacheManager();
    struct Data;
    std::unique_ptr<Data> m_data;
};

} // namespace Vs
