#pragma once

#include "Server/DataModel/DocumentEvents.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace Vs {

namespace Native {
class FileLock;
}

/// Ensures that only one of several programs works on a document's file: this run notes next to each file
/// that it holds it, and a document whose file another program holds (HeldFiles) is read-only until it is
/// released. Recovery files belong to nobody. Does nothing before `start`. Main thread only.
class DocumentLocks : private DocumentEventSite
{
public:
    static DocumentLocks* get();

    /// For a run in which a person works.
    void start();
    /// Releases all files.
    void end();

    /// Checks whether the other program has released the file, and takes it then. With `anyway` it is taken
    /// even if a program on another machine may still have it. True if the document isn't held elsewhere now.
    bool takeAgain(Document* document, bool anyway = false);

    /// Whether another program has changed what is in the document's file since it was opened or saved.
    [[nodiscard]] static bool isChangedOutside(const Document& document);

    /// Called with a document that turns out to be held by somebody else, or no longer is.
    void onChange(std::function<void(Document*)> callback) { m_changed = std::move(callback); }

private:
    DocumentLocks();
    ~DocumentLocks() override;
    void documentOpened(DocumentEvent* event) override { follow(event->document()); }
    void documentSaved(DocumentEvent* event) override { follow(event->document()); }
    void documentUpdated(DocumentEvent* event) override { follow(event->document()); }
    void documentClosed(DocumentEvent* event) override;
    void follow(Document* document);

    struct Held
    {
        std::wstring path; ///< Of the document when it was checked.
        std::unique_ptr<Native::FileLock> lock;
    };
    bool take(Document* document, Held& held, bool anyway);

    std::map<const Document*, Held> m_documents;
    std::function<void(Document*)> m_changed;
    bool m_started = false;
};

} // namespace Vs
