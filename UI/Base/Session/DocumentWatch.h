#pragma once

#include "Server/DataModel/DocumentEvents.h"
#include "Server/DataModel/FileUser.h"

#include <QDateTime>

#include <map>
#include <memory>
#include <string>

class QFileSystemWatcher;
class QTimer;

namespace Vu {

/// Watches the files of open documents in a run with a window. If somebody else works on one of them, the
/// document is read-only, and the user is told who it is. If another program changes one, or the foreign file
/// that a document was read from, the user is offered to reload it, keeping the camera and the selection. One
/// at a time. Main thread only.
class DocumentWatch : private Vs::DocumentEventSite
{
public:
    /// Watches documents that are open and those opened later.
    DocumentWatch();
    /// Releases all files.
    ~DocumentWatch() override;

    /// For a run with a window, up to its end; once.
    static void begin();

    /// A sentence: name, machine, since when.
    [[nodiscard]] static std::wstring whoHasIt(const Vs::FileUser& user);

private:
    void documentOpened(Vs::DocumentEvent* event) override { follow(event->document()); }
    void documentCreated(Vs::DocumentEvent* event) override { follow(event->document()); }
    void documentSaved(Vs::DocumentEvent* event) override { follow(event->document()); }
    void documentUpdated(Vs::DocumentEvent* event) override { follow(event->document()); }
    void documentClosed(Vs::DocumentEvent* event) override;

    struct Watched
    {
        std::wstring file; ///< The native one, or the foreign source; empty if there is none.
        bool isForeign = false;
        QDateTime modified; ///< The file's state when it was read, or when its change was reported.
        qint64 size = 0;
    };
    static Watched lookAt(const std::wstring& file, bool isForeign);
    void follow(Vs::Document* document);
    void leave(const std::wstring& file);
    void look();
    bool changed(const Vs::Document& document, const Watched& watched) const;
    void offerReload(const Vs::Document& document, Watched& watched);
    static void heldChanged(Vs::Document* document);
    static void tellHeld(const Vs::Document& document, const Vs::FileUser& user);
    static void takeAgain(const std::wstring& path, bool anyway);
    static void takeOver(const std::wstring& path);
    static void reload(const std::wstring& file);

    std::unique_ptr<QFileSystemWatcher> m_watcher;
    std::unique_ptr<QTimer> m_later;
    std::map<Vs::Document*, Watched> m_documents;
    int m_looks = 0;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
