#include "Server/DataModel/DocumentLocks.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/HeldFiles.h"
#include "Server/DataModel/Native/DocumentSave.h"
#include "Server/DataModel/Native/FileLock.h"
#include "Server/DataModel/Native/Paths.h"
#include "Server/DataModel/Recovery/AutoSaveController.h"

#include <exception>

namespace Vs {

DocumentLocks::DocumentLocks() = default;
DocumentLocks::~DocumentLocks() = default;

DocumentLocks* DocumentLocks::get()
{
    static auto* const locks = new DocumentLocks;
    return locks;
}

void DocumentLocks::start()
{
    if (m_started)
        return;
    m_started = true;
    DocumentEventSource::get()->subscribe(this);
    for (unsigned i = 0; i < DocumentMgr::get()->documents(); ++i)
        follow(DocumentMgr::get()->document(i));
}

void DocumentLocks::end()
{
    if (!m_started)
        return;
    m_started = false;
    DocumentEventSource::get()->unsubscribe(this);
    for (const auto& [document, held] : m_documents)
        HeldFiles::note(document, {});
    m_documents.clear();
}

bool DocumentLocks::takeAgain(Document* document, bool anyway)
{
    const auto found = m_documents.find(document);
    if (found == m_documents.end() || !HeldFiles::holder(document))
        return true;
    if (!take(document, found->second, anyway))
        return false;
    if (m_changed)
        m_changed(document);
    return true;
}

bool DocumentLocks::take(Document* document, Held& held, bool anyway)
{
    HeldFiles::note(document, {});
    FileUser user;
    try {
        held.lock =
            Native::FileLock::take(Native::followedPath(Strings::toBytes(document->path())), user, anyway);
    } catch (const std::exception&) {
        return true; // A path that leads nowhere belongs to nobody.
    }
    if (held.lock || user.name.empty())
        return true;
    HeldFiles::note(document, std::move(user));
    return false;
}

bool DocumentLocks::isChangedOutside(const Document& document)
{
    return DocumentSave::isChangedOutside(document);
}

void DocumentLocks::follow(Document* document)
{
    // A document that has lost its path, which is not announced, mustn't keep the next one from the file.
    for (auto& [other, held] : m_documents)
        if (other != document && held.path != other->path()) {
            held.path.clear();
            held.lock.reset();
        }
    Held& held = m_documents[document];
    if (held.path == document->path())
        return;
    held.path = document->path();
    held.lock.reset();
    const bool wasHeld = HeldFiles::holder(document) != nullptr;
    HeldFiles::note(document, {});
    if (document->isOnDisk() && !AutoSaveController::isRecoveryFile(document->path()))
        take(document, held, false);
    if (m_changed && (wasHeld || HeldFiles::holder(document)))
        m_changed(document);
}

void DocumentLocks::documentClosed(DocumentEvent* event)
{
    if (event->timing() != Timing::After)
        return;
    m_documents.erase(event->document());
    HeldFiles::note(event->document(), {});
}

} // namespace Vs
