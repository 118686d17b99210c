#pragma once

#include "Server/Itemhub/Private/QueueEntry.h"
#include "Server/Itemhub/Private/WorkFiles.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace Vs::Itemhub {

/// The saves on disk that are to become versions, and the single thread that uploads those of the
/// signed-in account, in order per document; a document whose upload fails doesn't hold up the others. Any
/// thread. Notifications are sent on the main one.
class UploadQueue
{
public:
    using Path = boost::filesystem::path;

    static UploadQueue& get();

    /// Queues what the working file contains now. Once it returns, none of that can be lost. Does nothing
    /// for a content that is queued already. Throws Vs::Exception.
    void add(const WorkFile& work, const std::string& label, bool isFound);
    /// Somebody has signed in: looks for saves that haven't been queued, and uploads until stop(). Main
    /// thread.
    void begin();
    /// Ends a pause.
    void wake();
    /// Ends the thread; the current upload continues in the next run or after the next begin(). Main
    /// thread.
    void stop();

    [[nodiscard]] std::vector<QueueEntry> entries() const;
    /// Returns a failed entry, named by its link, to the queue; false if it isn't there.
    bool retry(const Path& link);
    /// Removes a failed entry.
    void giveUp(const Path& link);
    /// Whether anything of the signed-in account is waiting or being uploaded.
    [[nodiscard]] bool isBusy() const;

private:
    using Clock = std::chrono::steady_clock;
    enum class Outcome { Done, Later, Given };

    UploadQueue() = default;
    void loop();
    [[nodiscard]] std::optional<QueueEntry> next() const;
    [[nodiscard]] bool uploadNext();
    /// Sets `version` to the one that has arrived.
    [[nodiscard]] Outcome upload(QueueEntry& entry, const std::shared_ptr<ItemStore>& store,
                                 std::int64_t& version);
    [[nodiscard]] Outcome failed(QueueEntry& entry, QueueEntry::State state, const std::string& reason);
    void tellOfSignIn(const std::wstring& message);
    void queueFound();
    void pause();
    [[nodiscard]] std::optional<QueueEntry> find(const Path& link) const;

    mutable std::mutex m_mutex; ///< Guards the members below and the folder.
    std::condition_variable m_changed;
    std::thread m_thread;
    bool m_ends = false, m_isWoken = false, m_scans = false;
    bool m_toldOfSignIn = false; ///< That the service no longer accepts the token.
    std::optional<Clock::time_point> m_pausedUntil;
    std::chrono::seconds m_nextPause{1};
    int m_nonsense = 0; ///< Consecutive responses that made no sense.
    std::atomic<bool> m_cancelled = false;
    Path m_uploading;
};

} // namespace Vs::Itemhub
