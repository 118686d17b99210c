#pragma once

#include "Server/DataModel/Recovery/AutoSavedFileInfo.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Vs {

class Document;

/// Keeps unsaved changes, so that a run that ends badly costs the user at most the last step.
///
/// A while after each committed step a forked child writes the document, as it was at that moment, into a
/// recovery file in this run's own folder; the main thread is blocked only for the fork. The file replaces
/// the previous one only after it was read back. It is removed when the document is saved or closed, and the
/// folder at the end of the run. Folders of runs that ended badly are offered to the next one: the first that
/// asks has them for as long as it lives, and no two have the same. Main thread only.
class AutoSaveController
{
public:
    static AutoSaveController* get();

    /// Fills in the recovery files of runs that ended badly, and those of documents that this run closed
    /// without asking, newest first. Each was read completely; where a document's last one is damaged, the
    /// previous one is listed.
    void getAllRecoverFiles(std::vector<AutoSavedFileInfo>& files);

    /// Starts to look at them, in the background: `work` continues it. The sites are notified when everything
    /// is known (autoSavedRecoveryFilesFound), and getAllRecoverFiles needn't wait any more.
    void lookForFiles();
    /// Whether getAllRecoverFiles would return at once.
    [[nodiscard]] bool hasLooked() const;

    enum class Reason {
        Taken,   ///< An open document, or a copy, was made from it.
        Unwanted ///< The user doesn't want it, and isn't asked about it again.
    };
    /// Releases a recovery file. If a document was opened from it, that is dirty from now on and the file
    /// stays its recovery file until the document has a new one or is saved. If it was copied, it is removed.
    /// If it is unwanted, it is kept as discarded for a day (keepDiscarded). Otherwise its content isn't safe
    /// anywhere else: it stays, the sites are notified, and the result is false; false as well for a file
    /// that isn't a recovery file.
    bool deleteARecoveryFile(const std::wstring& recoveryPath, Reason reason = Reason::Taken);
    /// Copies a recovery file and reads the copy back. False if that failed: then whatever was at the new
    /// path is unchanged, and the sites are notified.
    bool saveRecoveryFileAs(const std::wstring& recoveryPath, const std::wstring& newPath);

    /// To be called around each line of text. What a line did to a document is kept in a journal next to the
    /// recovery file until the next recovery file exists, so that a fast script loses no more than a person
    /// does. `line` is empty if it may not be run again.
    void lineBegins();
    void lineDone(const std::wstring& line);
    /// How many steps the journal of a recovery file has.
    [[nodiscard]] size_t stepsBehind(const std::wstring& recoveryPath);
    /// Replays the journal's steps in the document that was opened from the recovery file; `run` executes a
    /// line. A step that doesn't lead to the same state as before is undone, and ends the replay.
    void replaySteps(const std::wstring& recoveryPath, Document* document,
                     const std::function<void(const std::wstring& line)>& run);

    /// The user was asked, and doesn't want what changed in the document since it was saved: when it is
    /// closed in this state, its recovery file is discarded. That of any other dirty document is offered
    /// again.
    void declined(Document* document);

    /// Whether that is a recovery file, of this run or another: not a place where somebody works.
    [[nodiscard]] static bool isRecoveryFile(const std::wstring& path);
    /// Whether a file is in the folder of recovery files, or would be.
    [[nodiscard]] static bool isInRecoveryFolder(const std::wstring& path);

    /// Starts to watch the documents. Nothing is written before.
    void start();
    /// Called when there is something to do: `work` must then be called, in idle moments, until it says that
    /// nothing is left.
    void wakeUp(std::function<void()> callback);
    /// Does what is due, at most one fork; false if nothing is left to wait for.
    bool work();
    /// Says that no main loop calls `work` when idle: steps may follow each other without a quiet moment, so
    /// what is due is done between two of them.
    void withoutLoop(bool without);
    /// Writes what still needs to be kept, without waiting for a quiet moment, and returns when it is on the
    /// disk; for a run that is about to end without being able to ask anybody. False if something couldn't be
    /// kept.
    bool writeAll();
    /// Whether what a user doesn't want is nevertheless kept for a day. Initially on; a run without a user
    /// turns it off.
    void keepDiscarded(bool keep);
    /// A run that ends normally leaves nothing behind, except for documents that were recovered and neither
    /// saved nor declined.
    void end();

    class Data;

private:
    AutoSaveController();
    ~AutoSaveController();
    void lookOn();

    std::unique_ptr<Data> m_data;
};

} // namespace Vs
