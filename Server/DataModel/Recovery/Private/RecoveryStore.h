#pragma once

#include "Server/DataModel/Model/FileMapping.h"
#include "Server/DataModel/Recovery/AutoSavedFileInfo.h"
#include "Server/DataModel/Recovery/Private/RecoveryCheck.h"
#include "Server/DataModel/Recovery/Private/SessionFolder.h"

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace Vs::Recovery {

constexpr const char* kSuffix = ".backup";
/// Below a document's folder: the generation before.
constexpr const char* kOlder = "older";

/// All recovery files of this user: this run's folder, and those that others left and this run has taken
/// over. Paths are bytes.
class RecoveryStore
{
public:
    /// This run's folder, made at the first call. Throws std::runtime_error.
    const SessionFolder& own();
    /// Null if nothing was kept so far.
    const SessionFolder* ownIfThere() const { return m_own.get(); }

    /// Those of runs that ended badly, the newest first. `tell` hears where damaged files were put.
    [[nodiscard]] std::vector<AutoSavedFileInfo>
    left(const std::function<void(const std::string&)>& tellDamaged);
    /// Has a file of this run's own among those that are left.
    void offer(const std::string& file) { m_offered.insert(file); }
    void withdraw(const std::string& file) { m_offered.erase(file); }
    /// Whether it is one of those.
    [[nodiscard]] bool isOffered(const std::string& file) const;
    /// The document's folder that a file of either generation is in.
    [[nodiscard]] static std::string folderOf(const std::string& file);

    /// Of a file that `left` has given.
    const RecoveryRecord& record(const std::string& file) { return checked(file).record; }

    /// Removes a file with the generation before, or puts it among those that are kept for a day.
    void remove(const std::string& file);
    void discard(const std::string& file);
    void keepDiscarded(bool keep) { m_keepsDiscarded = keep; }

    /// Gives all folders free, and removes those in which nothing is left.
    void end();

    /// The last file of a document's folder; empty if there is none.
    [[nodiscard]] static std::string fileIn(const std::string& folder);

private:
    struct Known
    {
        FileIdentity identity;
        RecoveryCheck check;
    };
    void takeOver();
    void look(const std::string& folder, std::vector<AutoSavedFileInfo>& files,
              const std::function<void(const std::string&)>& tellDamaged);
    const RecoveryCheck& checked(const std::string& file);
    void prune();

    std::unique_ptr<SessionFolder> m_own;
    std::map<std::string, std::unique_ptr<SessionFolder>> m_taken; ///< By path.
    std::set<std::string> m_offered;                               ///< Of this run's own.
    std::map<std::string, Known> m_known;
    bool m_keepsDiscarded = true;
};

} // namespace Vs::Recovery
