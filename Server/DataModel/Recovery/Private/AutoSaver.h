#pragma once

#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/DocumentEvents.h"
#include "Server/DataModel/Recovery/Private/DocumentJournal.h"
#include "Server/DataModel/Recovery/Private/RecoveryStore.h"
#include "Server/DataModel/Recovery/Private/Snapshot.h"
#include "Server/DataModel/Recovery/Private/SnapshotChild.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Vs::Recovery {

/// Watches the open documents and has changed ones written. Main thread.
class AutoSaver : private DocumentEventSite, private AssetEventSite
{
public:
    /// The store must outlive it.
    explicit AutoSaver(RecoveryStore& store) : m_store(store) {}
    ~AutoSaver() override;

    void start();
    void onWakeUp(std::function<void()> callback) { m_wakeUp = std::move(callback); }
    /// There is now something to do.
    void wakeUp() const
    {
        if (m_wakeUp)
            m_wakeUp();
    }
    void withoutLoop(bool without) { m_withoutLoop = without; }
    bool work();
    bool writeAll();
    /// Before the store's. With `asked`, a user was asked about unsaved changes, so they are discarded;
    /// otherwise everything is removed except the files of documents that were recovered and not saved since.
    void end(bool asked);

    /// What wasn't done by a line isn't in any journal.
    void lineBegins() { keepLine({}); }
    void lineDone(const std::wstring& line)
    {
        keepLine(line);
        writeFirst();
    }

    /// The user doesn't want the document's changes, as they are now.
    void declined(Document* document);

    /// The document was opened from a recovery file: it isn't saved anywhere else. Starts watching if need
    /// be.
    void adopt(Document& document, const std::string& file);
    bool isAdopted(const std::string& file) const;

private:
    using Clock = std::chrono::steady_clock;
    struct Watched
    {
        unsigned changes = 0, written = 0; ///< Counts changes; what isn't written yet is pending.
        Clock::time_point firstPending, lastChange, notBefore;
        std::string file;                 ///< The verified one; empty if there is none.
        std::wstring name;                ///< Of the document, in the last file that was begun.
        std::vector<std::string> adopted; ///< Files that the document was opened from, not released yet.
        bool recovered = false;           ///< Opened from one, and not saved since.
        bool declined = false;
        DocumentJournal journal;
        unsigned journaled = 0; ///< Watched::changes as far as a file or a journal covers them.
    };
    struct Running
    {
        std::unique_ptr<SnapshotChild> child;
        Document* document;
        std::string file;
        unsigned changes; ///< Watched::changes at the time of writing.
        unsigned journal; ///< For what comes after.
        Clock::time_point since;
    };

    void stepped(Document* document);
    void changed(Document* document);
    static bool isPending(const Document& document, const Watched& watched);
    static bool mayBegin(const Document& document, const Watched& watched, Clock::time_point now);
    void writeFirst();
    void write(Document& document, Watched& watched, bool inChild);
    void ended(const std::string& cause);
    void stopChild();
    void failed(Watched& watched, const Document& document, const std::string& cause);
    void keepLine(const std::wstring& line);
    void drop(Watched& watched, bool unwanted);
    void letGo(const std::string& file, bool unwanted);
    void letGoOfAdopted(Watched& watched, bool unwanted);
    void leave(Document& document, Watched& watched);

    void assetRenamed(AssetEvent* event) override;
    void assetDirtyChanged(AssetEvent* event) override;
    void documentUpdated(DocumentEvent* event) override;
    void documentClosed(DocumentEvent* event) override;

    RecoveryStore& m_store;
    std::function<void()> m_wakeUp;
    std::map<Document*, Watched> m_documents;
    std::map<std::string, bool> m_left; ///< Files of documents closed unasked; whether recovered.
    std::unique_ptr<Running> m_running;
    bool m_started = false;
    bool m_withoutLoop = false;
    bool m_failing = false;
};

} // namespace Vs::Recovery
