#include "UI/Base/Session/DocumentWatch.h"

#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentLocks.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/HeldFiles.h"
#include "Server/DataModel/Recovery/AutoSaveController.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Program/Notifications.h"

#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QLocale>
#include <QTimer>

#include <boost/filesystem/path.hpp>

#include <algorithm>
#include <vector>

namespace Vu {
namespace {

constexpr const wchar_t* kHeld = L"DocumentHeld";
constexpr const wchar_t* kChanged = L"DocumentChanged";
/// Who writes a file does so in several steps. Milliseconds.
constexpr int kQuiet = 400;
/// A file that is gone may come back under its name: this is how often it is looked for.
constexpr int kMostLooks = 10;

void removeAbout(const wchar_t* sender, const std::wstring& file)
{
    Vs::NotificationCenter::get()->removeAboutFile(sender, file);
}

std::wstring nameOf(const std::wstring& file)
{
    return boost::filesystem::path(file).filename().wstring();
}

} // namespace

void DocumentWatch::begin()
{
    // It lives to the end of the process, like what it listens to.
    static auto* const watch = new DocumentWatch;
    static_cast<void>(watch);
}

DocumentWatch::DocumentWatch()
    : m_watcher(std::make_unique<QFileSystemWatcher>()), m_later(std::make_unique<QTimer>())
{
    m_later->setSingleShot(true);
    QObject::connect(m_later.get(), &QTimer::timeout, m_later.get(), [this] { look(); });
    QObject::connect(m_watcher.get(), &QFileSystemWatcher::fileChanged, m_watcher.get(), [this] {
        m_looks = 0;
        m_later->start(kQuiet);
    });
    m_subscriptions.add(Vs::DocumentEventSource::get(), this);
    Vs::DocumentLocks::get()->onChange(&heldChanged);
    Vs::DocumentLocks::get()->start();
    for (unsigned i = 0; i < Vs::DocumentMgr::get()->documents(); ++i)
        follow(Vs::DocumentMgr::get()->document(i));
}

DocumentWatch::~DocumentWatch()
{
    Vs::DocumentLocks::get()->end();
    Vs::DocumentLocks::get()->onChange(nullptr);
    m_subscriptions.clear();
}

std::wstring DocumentWatch::whoHasIt(const Vs::FileUser& user)
{
    if (user.since == 0)
        return localizedFormat("FileHeldBy", "%1% on %2% is working on it.", user.name, user.machine);
    const QDateTime since = QDateTime::fromSecsSinceEpoch(user.since);
    return localizedFormat("FileHeldBySince", "%1% on %2% has been working on it since %3%.", user.name,
                           user.machine, QLocale().toString(since, QLocale::ShortFormat).toStdWString());
}

void DocumentWatch::heldChanged(Vs::Document* document)
{
    removeAbout(kHeld, document->path());
    if (const Vs::FileUser* user = Vs::HeldFiles::holder(document))
        tellHeld(*document, *user);
    Vs::DocumentEvent event(document, Vs::Timing::Notification);
    Vs::DocumentEventSource::get()->fireDocumentUpdated(&event);
}

void DocumentWatch::tellHeld(const Vs::Document& document, const Vs::FileUser& user)
{
    Vs::NotificationRequest request;
    request.title = localizedFormat("DocumentHeld", "\"%1%\" is open read only", document.displayName());
    request.text = whoHasIt(user);
    request.file = document.path();
    request.clientID = kHeld;
    request.type = Vs::NotificationType::makeByType(Vs::NotificationType::Warning);
    request.actions.push_back({localized("DocumentHeldTryAgain", "Try again"),
                               [path = document.path()] { takeAgain(path, false); }, false});
    // A program that has died here is known to have.
    if (user.isElsewhere)
        request.actions.push_back({localized("DocumentHeldTakeOver", "Take over..."),
                                   [path = document.path()] { takeOver(path); }, false});
    Vs::NotificationCenter::get()->sendNotification(std::move(request));
}

void DocumentWatch::takeAgain(const std::wstring& path, bool anyway)
{
    if (Vs::Document* held = Vs::DocumentMgr::get()->document(path))
        if (!Vs::DocumentLocks::get()->takeAgain(held, anyway))
            heldChanged(held);
}

void DocumentWatch::takeOver(const std::wstring& path)
{
    const Vs::Document* document = Vs::DocumentMgr::get()->document(path);
    const Vs::FileUser* user = document ? Vs::HeldFiles::holder(document) : nullptr;
    if (!user)
        return;
    MessageBox box(localizedFormat("TakeOverHeld",
                                   "Take over \"%1%\"?\n%2%\nIf that is still the case, what one of you "
                                   "saves is lost when the other one saves.",
                                   document->displayName(), whoHasIt(*user)));
    box.icon(kQuestionIcon);
    box.addButton(localized("TakeOver", "Take over"));
    box.addButton(kCancelButton, true);
    if (box.show() == 0)
        takeAgain(path, true);
}

DocumentWatch::Watched DocumentWatch::lookAt(const std::wstring& file, bool isForeign)
{
    const QFileInfo found(QString::fromStdWString(file));
    return {file, isForeign, found.lastModified(), found.size()};
}

void DocumentWatch::follow(Vs::Document* document)
{
    const bool isForeign = !document->isOnDisk();
    const std::wstring& file = isForeign ? document->importedFrom() : document->path();
    Watched& watched = m_documents[document];
    if (watched.file != file) {
        const std::wstring before = watched.file;
        watched = lookAt(file, isForeign);
        leave(before);
        removeAbout(kChanged, file);
    }
    // To the system, a replaced file is a different file.
    const QString name = QString::fromStdWString(file);
    if (!name.isEmpty() && !Vs::AutoSaveController::isRecoveryFile(file) &&
        !m_watcher->files().contains(name) && QFileInfo::exists(name))
        m_watcher->addPath(name);
}

/// A reloaded document has the file of the one that it replaces.
void DocumentWatch::leave(const std::wstring& file)
{
    const bool isShared = std::any_of(m_documents.begin(), m_documents.end(),
                                      [&](const auto& each) { return each.second.file == file; });
    if (file.empty() || isShared)
        return;
    m_watcher->removePath(QString::fromStdWString(file));
    removeAbout(kChanged, file);
    removeAbout(kHeld, file);
}

void DocumentWatch::documentClosed(Vs::DocumentEvent* event)
{
    const auto found = m_documents.find(event->document());
    if (event->timing() != Vs::Timing::After || found == m_documents.end())
        return;
    const std::wstring file = found->second.file;
    m_documents.erase(found);
    leave(file);
}

bool DocumentWatch::changed(const Vs::Document& document, const Watched& watched) const
{
    const Watched now = lookAt(watched.file, watched.isForeign);
    // Nothing is reported twice, and a file that is gone may come back.
    if (!now.modified.isValid() || (now.modified == watched.modified && now.size == watched.size))
        return false;
    return watched.isForeign || Vs::DocumentLocks::isChangedOutside(document);
}

void DocumentWatch::look()
{
    bool isGone = false;
    for (auto& [document, watched] : m_documents) {
        if (watched.file.empty())
            continue;
        isGone = isGone || !QFileInfo::exists(QString::fromStdWString(watched.file));
        follow(document);
        if (changed(*document, watched))
            offerReload(*document, watched);
    }
    if (isGone && ++m_looks < kMostLooks)
        m_later->start(kQuiet);
}

void DocumentWatch::offerReload(const Vs::Document& document, Watched& watched)
{
    removeAbout(kChanged, watched.file);
    // The next change is reported again.
    watched = lookAt(watched.file, watched.isForeign);
    Vs::NotificationRequest request;
    request.title = localizedFormat("DocumentChangedOutside", "Another program has changed \"%1%\"",
                                    nameOf(watched.file));
    if (document.isDirty(false))
        request.text = localized("DocumentChangedDirty", "You have changed it here as well.");
    request.file = watched.file;
    request.clientID = kChanged;
    request.type = Vs::NotificationType::makeByType(Vs::NotificationType::Offer);
    request.actions.push_back(
        {localized("DocumentReload", "Reload"), [file = watched.file] { reload(file); }, false});
    Vs::NotificationCenter::get()->sendNotification(std::move(request));
}

void DocumentWatch::reload(const std::wstring& file)
{
    const Vs::Document* document = Vs::DocumentMgr::get()->bestDocument(file);
    if (!document)
        return;
    if (document->isDirty(false)) {
        MessageBox box(localizedFormat(
            "ReloadDirty", "Reload \"%1%\"?\nWhat you have changed in it here is not in the file.",
            document->displayName()));
        box.icon(kQuestionIcon);
        box.addButton(localized("DocumentReload", "Reload"));
        box.addButton(kCancelButton, true);
        if (box.show() != 0)
            return;
    }
    const Vs::TextCommandResult result = Vs::TextCommandMgr::get()->executeCommandWithoutOutput(
        L"Document.Revert " + Vs::Strings::quote(file));
    if (result.first != 0)
        Application::get()->inform(result.second);
}

} // namespace Vu
