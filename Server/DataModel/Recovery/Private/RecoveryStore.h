#pragma once

#include "Server/DataModel/Model/FileMapping.h"
#include "Server/DataModel/Recovery/AutoSavedFileInfo.h"
#include "Server/DataModel/Recovery/Private/RecoveryCheck.h"
#include "Server/DataModel/Recovery/Private/SessionFolder.h"

#include <functional>
#include <map>
#include <memory>
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
    /// Whether it is one that another run left and this one has taken over.
    [[nodiscard]] bool isTaken(const std::string& file) const;

    /// Removes a file with the generation before, or puts it among those that are kept for a day.
    void remove(const std::string& file);
    void discard(const std::string& file);
    void keepDiscarded(bool keep) { m_keepsDiscarded = keep; }

    /// Removes this run's folder with all that is in it.
    void removeOwn();
    /// Gives all folders free.
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
    std::map<std::string, Known> m_known;
    bool m_keepsDiscarded = true;
};

} // namespace Vs::Recovery
