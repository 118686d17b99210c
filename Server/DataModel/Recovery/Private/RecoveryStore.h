#pragma once

#include "Server/DataModel/Model/FileMapping.h"
#include "Server/DataModel/Recovery/AutoSavedFileInfo.h"
#include "Server/DataModel/Recovery/Private/RecoveryCheck.h"
#include "Server/DataModel/Recovery/Private/RecoveryChecker.h"
#include "Server/DataModel/Recovery/Private/SessionFolder.h"
#include "Server/DataModel/Recovery/Private/StepJournal.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace Vs::Recovery {

constexpr const char* kSuffix = ".backup";
/// Below a document's folder: the previous generation.
constexpr const char* kOlder = "older";

/// All recovery files of this user: this run's folder, and those that other runs left and this one has taken
/// over. Paths are bytes.
class RecoveryStore
{
public:
    using Tell = std::function<void(const std::string& file)>;

    /// This run's folder, created at the first call. Throws std::runtime_error.
    const SessionFolder& own();

    /// Continues to look for what runs that ended badly left, for a few milliseconds at most: takes over
    /// their folders and has the files checked. False once everything is known.
    bool look();
    bool hasLooked() const { return m_listed && m_toClaim.empty() && !m_checker.isBusy(); }
    /// Those of runs that ended badly, newest first, once everything is known. `tell` is told where damaged
    /// files were moved.
    [[nodiscard]] const std::vector<AutoSavedFileInfo>& left(const Tell& tellDamaged);
    /// Counts a file of this run among those that are left.
    void offer(const std::string& file)
    {
        m_offered.insert(file);
        m_left.reset();
    }
    void withdraw(const std::string& file)
    {
        m_offered.erase(file);
        m_generations.erase(folderOf(file));
        m_left.reset();
    }
    /// Whether it is one of those.
    [[nodiscard]] bool isOffered(const std::string& file) const;
    /// The document's folder that a file of either generation is in.
    [[nodiscard]] static std::string folderOf(const std::string& file);

    /// For a file that `left` has returned.
    const RecoveryRecord& record(const std::string& file) { return checkedHere(file).record; }

    /// What was done since that file was begun; nothing for the previous generation.
    [[nodiscard]] std::vector<StepJournal::Step> stepsBehind(const std::string& file);

    /// Removes a file together with the previous generation.
    void remove(const std::string& file);
    /// Moves it to those that are kept for a day. False if that fails, and it stays where it is.
    bool discard(const std::string& file);
    void keepDiscarded(bool keep) { m_keepsDiscarded = keep; }

    /// Releases all folders, and removes those that are empty.
    void end();

    /// The last file in a document's folder; empty if there is none.
    [[nodiscard]] static std::string fileIn(const std::string& folder);
    /// The previous one.
    [[nodiscard]] static std::string olderIn(const std::string& folder);

private:
    using Clock = std::chrono::steady_clock;
    struct Known
    {
        FileIdentity identity;
        RecoveryCheck check;
    };
    /// For one document; empty where there is none.
    struct Generations
    {
        std::string last, older;
    };
    void list();
    void claimNext();
    void haveChecked(const std::string& file);
    void take(const std::string& file, RecoveryCheck check);
    void haveAllChecked(const std::string& session);
    void lookToTheEnd();
    bool isUnchanged(const std::vector<AutoSavedFileInfo>& files) const;
    std::vector<AutoSavedFileInfo> collectAll(const Tell& tellDamaged);
    void collect(const Generations& generations, std::vector<AutoSavedFileInfo>& files,
                 const Tell& tellDamaged);
    const RecoveryCheck* known(const std::string& file) const;
    const RecoveryCheck& checkedHere(const std::string& file);
    void prune();

    std::unique_ptr<SessionFolder> m_own;
    std::map<std::string, std::unique_ptr<SessionFolder>> m_taken; ///< By path.
    std::set<std::string> m_offered;                               ///< Of this run's own.
    std::map<std::string, Generations> m_generations; ///< By the document's folder; all that may be offered.
    std::map<std::string, Known> m_known;
    std::optional<std::vector<AutoSavedFileInfo>> m_left; ///< As long as nothing has changed.
    RecoveryChecker m_checker;
    std::map<std::string, FileIdentity> m_checking; ///< As they were when it got them.
    std::deque<std::string> m_toClaim;
    bool m_listed = false;
    bool m_awaits = true; ///< Children of dead runs.
    Clock::time_point m_lastListed;
    bool m_keepsDiscarded = true;
    std::optional<Clock::time_point> m_pruned;
    uintmax_t m_discarded = 0; ///< Bytes, keyed by what has been known since then.
};

} // namespace Vs::Recovery
