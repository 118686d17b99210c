#pragma once

#include "Server/DataModel/Recovery/AutoSavedFileInfo.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Vs {

class Document;

/// Keeps what isn't saved yet, so that a run that ends badly costs a person at most the last step.
///
/// A while after each committed step a forked child writes the document, as it was at that moment, into a
/// recovery file of this run's own folder; the main thread stands still for the fork alone. The file takes
/// the place of the one before only after it was read back. It goes when the document is saved or closed, and
/// the folder with the run. Folders of runs that ended badly are offered to the next one: the first that asks
/// has them for as long as it lives, and no two have the same. Main thread only.
class AutoSaveController
{
public:
    static AutoSaveController* get();

    /// Fills in the recovery files of runs that ended badly, and those of documents that this run closed
    /// without asking, the newest first. Each was read through; where the last one of a document is damaged
    /// it is the one before.
    void getAllRecoverFiles(std::vector<AutoSavedFileInfo>& files);

    /// Begins to look at them, in the background: `work` goes on with it. The sites hear when everything is
    /// known (autoSavedRecoveryFilesFound), and getAllRecoverFiles needn't wait any more.
    void lookForFiles();
    /// Whether getAllRecoverFiles would answer at once.
    [[nodiscard]] bool hasLooked() const;

    enum class Reason {
        Taken,   ///< An open document has been made of it, or a copy.
        Unwanted ///< The user doesn't want it, and hears no more of it.
    };
    /// Lets go of a recovery file. If a document was opened from it, that is dirty from now on and the file
    /// stays its recovery file until it has one of its own, or is saved. If it was copied, it is removed. If
    /// it is unwanted, it is kept as discarded for a day (keepDiscarded). Otherwise it isn't safe anywhere
    /// else: it stays, the sites hear so, and the answer is false; as it is for what is no recovery file.
    bool deleteARecoveryFile(const std::wstring& recoveryPath, Reason reason = Reason::Taken);
    /// Copies a recovery file and reads the copy back. False if that failed: nothing stands at the new path
    /// then but what stood there before, and the sites hear so.
    bool saveRecoveryFileAs(const std::wstring& recoveryPath, const std::wstring& newPath);

    /// To be called around each line of text. What a line did to a document stands in a journal beside the
    /// recovery file until the next one is there, so that a fast script loses no more than a person does.
    /// `line` is empty if it may not be run again.
    void lineBegins();
    void lineDone(const std::wstring& line);
    /// How many steps the journal of a recovery file has.
    [[nodiscard]] size_t stepsBehind(const std::wstring& recoveryPath);
    /// Makes the steps behind a recovery file again in the document that was opened from it, which `run` does
    /// with a line. A step that doesn't lead to the state that it led to is taken back, and ends it.
    void replaySteps(const std::wstring& recoveryPath, Document* document,
                     const std::function<void(const std::wstring& line)>& run);

    /// The user was asked, and doesn't want what changed in the document since it was saved: when it is
    /// closed like that its recovery file is discarded. That of any other dirty document is offered again.
    void declined(Document* document);

    /// Whether that is one, of this run or another: it is no place where somebody works.
    [[nodiscard]] static bool isRecoveryFile(const std::wstring& path);
    /// Whether a file lies in the folder of recovery files, or would.
    [[nodiscard]] static bool isInRecoveryFolder(const std::wstring& path);

    /// Begins to watch the documents. Before that nothing is written.
    void start();
    /// Called when there begins to be something to do: `work` is to be called, in an idle moment, until it
    /// says that it has nothing more.
    void wakeUp(std::function<void()> callback);
    /// Does what is due, which is a fork at most; false if nothing is left to wait for.
    bool work();
    /// Says that no main loop calls `work` whenever it has nothing to do: steps may follow one another
    /// without a quiet moment, and so what is due is done between two of them.
    void withoutLoop(bool without);
    /// Writes what is still to be kept, without waiting for a quiet moment, and returns when it is on the
    /// disk; for a run that is about to end without being able to ask anybody. False if something couldn't be
    /// kept.
    bool writeAll();
    /// Whether what a user doesn't want is kept for a day all the same. On at first; a run without a user
    /// turns it off.
    void keepDiscarded(bool keep);
    /// A run that ends normally leaves nothing behind, but for documents that were recovered and neither
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
