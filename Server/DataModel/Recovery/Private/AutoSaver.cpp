#include "Server/DataModel/Recovery/Private/AutoSaver.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/AllAssets.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AutoSaveDisabler.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Native/Package.h"
#include "Server/DataModel/Private/ChangeSteps.h"
#include "Server/DataModel/Private/Texts.h"
#include "Server/DataModel/Recovery/AutoSaveEvents.h"
#include "Server/DataModel/Recovery/AutoSaveOptionsGroup.h"
#include "Server/DataModel/Recovery/Private/QuietDocument.h"
#include "Server/DataModel/Recovery/Private/StepJournal.h"

#include <QTime>

#include <algorithm>
#include <exception>
#include <filesystem>

namespace Vs::Recovery {

using namespace std::chrono_literals;

namespace {

constexpr auto kQuiet = 50ms;      // after a step, before the fork
constexpr auto kLongestWait = 1s;  // for that quiet, where steps follow one another
constexpr auto kPause = 1s;        // between two files of one document, at least,
constexpr int kPauseFactor = 10;   // and so many times what the last one took
constexpr auto kPauseFailed = 10s; // before what failed is tried again
constexpr auto kIdle = 3s;         // since the last change, before the main thread writes by itself
constexpr double kMostWait = 30;   // seconds, for a child where the run can't go on without

AutoSaver* s_listening = nullptr;

} // namespace

AutoSaver::~AutoSaver()
{
    end(false);
}

void AutoSaver::start()
{
    if (m_started)
        return;
    m_started = true;
    s_listening = this;
    ChangeSteps::listener([](Asset* asset) { s_listening->stepped(asset->document()); });
    DocumentEventSource::get()->subscribe(this);
    AssetEventSource::get()->subscribe(this);
    for (unsigned i = 0; i < DocumentMgr::get()->documents(); ++i)
        if (DocumentMgr::get()->document(i)->isDirty(false))
            changed(DocumentMgr::get()->document(i));
}

void AutoSaver::end(bool asked)
{
    if (!m_started)
        return;
    m_started = false;
    ChangeSteps::listener(nullptr);
    DocumentEventSource::get()->unsubscribe(this);
    AssetEventSource::get()->unsubscribe(this);
    stopChild();
    for (auto& [document, watched] : m_documents)
        if (asked || !watched.recovered)
            drop(watched, asked && document->isDirty(false));
    m_documents.clear();
    for (const auto& [file, recovered] : m_left)
        if (asked)
            m_store.discard(file);
        else if (!recovered)
            m_store.remove(file);
    m_left.clear();
}

void AutoSaver::changed(Document* document)
{
    Watched& watched = m_documents[document];
    const Clock::time_point now = Clock::now();
    if (watched.changes == watched.written)
        watched.firstPending = now;
    ++watched.changes;
    watched.lastChange = now;
    watched.declined = false;
    wakeUp();
}

void AutoSaver::stepped(Document* document)
{
    changed(document);
    if (m_withoutLoop)
        work();
}

void AutoSaver::assetRenamed(AssetEvent* event)
{
    changed(event->asset()->document());
}

// The name stands in the file.
void AutoSaver::documentUpdated(DocumentEvent* event)
{
    const auto found = m_documents.find(event->document());
    if (found != m_documents.end() && !found->second.name.empty() &&
        found->second.name != event->document()->displayName())
        changed(event->document());
}

void AutoSaver::assetDirtyChanged(AssetEvent* event)
{
    Document* document = event->asset()->document();
    if (document->isDirty(false)) {
        changed(document);
        return;
    }
    // It was saved.
    const auto found = m_documents.find(document);
    if (found == m_documents.end())
        return;
    if (m_running && m_running->document == document)
        stopChild();
    drop(found->second, false);
}

void AutoSaver::documentClosed(DocumentEvent* event)
{
    Document* document = event->document();
    const auto found = m_documents.find(document);
    if (event->timing() != Timing::Before || found == m_documents.end())
        return;
    Watched& watched = found->second;
    // What isn't wanted is kept for a day as it was. Otherwise nobody waits for a child at low priority: a
    // script goes on, and in a window this process is quicker.
    if (m_running && m_running->document == document) {
        if (watched.declined && !m_withoutLoop)
            ended(m_running->child->wait(kMostWait));
        else
            stopChild();
    }
    if (document->isDirty(false) && !watched.declined)
        leave(*document, watched);
    else
        drop(watched, watched.declined);
    m_documents.erase(found);
}

// Nobody was asked, so that what isn't saved is offered again.
void AutoSaver::leave(Document& document, Watched& watched)
{
    if (!m_withoutLoop && isPending(document, watched) && isFree(document) &&
        !AutoSaveDisabler::disabled(&document)) {
        std::unique_ptr<Running> ofAnother = std::move(m_running);
        write(document, watched, false);
        m_running = std::move(ofAnother);
    }
    if (watched.file.empty() && watched.adopted.empty())
        return;
    if (!watched.file.empty()) {
        m_store.offer(watched.file);
        m_left[watched.file] = watched.recovered;
    }
    AutoSaveEvent event(Strings::fromBytes(watched.file.empty() ? watched.adopted.front() : watched.file),
                        DataModel::localizedFormat("ClosedUnsaved",
                                                   "\"%1%\" was closed with unsaved changes.",
                                                   document.displayName()));
    AutoSaveEventSource::get()->fireAutoSavedDocumentLeft(&event);
}

void AutoSaver::drop(Watched& watched, bool unwanted)
{
    watched.written = watched.changes;
    // What follows has no file to build on.
    watched.notBefore = {};
    watched.name.clear();
    watched.recovered = false;
    letGoOfAdopted(watched, unwanted);
    if (!watched.file.empty())
        letGo(watched.file, unwanted);
    watched.file.clear();
}

void AutoSaver::letGoOfAdopted(Watched& watched, bool unwanted)
{
    for (const std::string& file : watched.adopted) {
        m_left.erase(file);
        // A document that this run itself had before is written where it was.
        if (!watched.file.empty() && RecoveryStore::folderOf(file) == RecoveryStore::folderOf(watched.file))
            m_store.withdraw(file);
        else
            letGo(file, unwanted);
    }
    watched.adopted.clear();
}

void AutoSaver::letGo(const std::string& file, bool unwanted)
{
    // One that can't be put away is offered by the next run.
    if (unwanted)
        static_cast<void>(m_store.discard(file));
    else
        m_store.remove(file);
}

void AutoSaver::declined(Document* document)
{
    // Without watching documents, their closing goes unnoticed.
    if (m_started)
        m_documents[document].declined = true;
}

void AutoSaver::adopt(Document& document, const std::string& file)
{
    start();
    Watched& watched = m_documents[&document];
    watched.adopted.push_back(file);
    watched.recovered = true;
    for (Asset* asset : allAssets(document))
        asset->markDirty();
    changed(&document);
}

bool AutoSaver::isAdopted(const std::string& file) const
{
    return std::any_of(m_documents.begin(), m_documents.end(), [&](const auto& each) {
        return std::find(each.second.adopted.begin(), each.second.adopted.end(), file) !=
               each.second.adopted.end();
    });
}

bool AutoSaver::isPending(const Document& document, const Watched& watched)
{
    return watched.changes != watched.written && document.isDirty(false) &&
           AutoSaveOptionsGroup::get()->performAutoSave();
}

bool AutoSaver::mayBegin(const Document& document, const Watched& watched, Clock::time_point now)
{
    return now >= watched.notBefore && !AutoSaveDisabler::disabled(&document) && isFree(document);
}

bool AutoSaver::work()
{
    if (m_running)
        if (const auto cause = m_running->child->poll())
            ended(*cause);
    bool pending = false;
    Document* next = nullptr;
    const Clock::time_point now = Clock::now();
    for (auto& [document, watched] : m_documents) {
        if (!isPending(*document, watched))
            continue;
        pending = true;
        // Without a loop nobody comes by in a quiet moment.
        const auto since = m_withoutLoop ? watched.firstPending : watched.lastChange;
        const bool quiet = now - since >= kQuiet || now - watched.firstPending >= kLongestWait;
        if (quiet && mayBegin(*document, watched, now) &&
            (!next || watched.firstPending < m_documents[next].firstPending))
            next = document;
    }
    if (next && !m_running)
        write(*next, m_documents[next], true);
    return pending || m_running;
}

// A journal goes on from a file. Where there is none yet, a fast script could lose all of its lines up to the
// first quiet moment.
void AutoSaver::writeFirst()
{
    const Clock::time_point now = Clock::now();
    for (auto& [document, watched] : m_documents)
        if (!m_running && watched.file.empty() && isPending(*document, watched) &&
            mayBegin(*document, watched, now))
            write(*document, watched, true);
}

bool AutoSaver::writeAll()
{
    if (m_running)
        ended(m_running->child->wait(kMostWait));
    bool all = true;
    for (auto& [document, watched] : m_documents) {
        if (!isPending(*document, watched))
            continue;
        if (isFree(*document))
            write(*document, watched, true);
        if (m_running)
            ended(m_running->child->wait(kMostWait));
        if (isPending(*document, watched) && isFree(*document))
            write(*document, watched, false);
        all = all && !isPending(*document, watched);
    }
    return all;
}

void AutoSaver::write(Document& document, Watched& watched, bool inChild)
{
    const KernelHolds holds(document);
    if (!holds.all())
        return;
    const Clock::time_point now = Clock::now();
    try {
        const SessionFolder& session = m_store.own();
        const Snapshot snapshot = Snapshot::of(document, session.path(), watched.journal.next());
        Native::Package::prepare();
        Running running{nullptr, &document, snapshot.path(), watched.changes, watched.journal.next(), now};
        if (inChild) {
            running.child = SnapshotChild::start([&] { snapshot.write(Native::FileCalls::current()); },
                                                 session.descriptor());
            if (!running.child && now - watched.lastChange < kIdle)
                return;
        }
        watched.name = document.displayName();
        watched.journal.beginNext(snapshot.folder);
        watched.journaled = watched.changes;
        if (!running.child)
            snapshot.write(Native::FileCalls::current());
        m_running = std::make_unique<Running>(std::move(running));
        if (!m_running->child)
            ended({});
    } catch (const std::exception& error) {
        m_running.reset();
        failed(watched, document, error.what());
    }
}

void AutoSaver::keepLine(const std::wstring& line)
{
    for (auto& [document, watched] : m_documents)
        if (std::exchange(watched.journaled, watched.changes) != watched.changes &&
            AutoSaveOptionsGroup::get()->performAutoSave())
            watched.journal.keep(*document, line);
}

void AutoSaver::ended(const std::string& cause)
{
    const std::unique_ptr<Running> running = std::move(m_running);
    Watched& watched = m_documents[running->document];
    const Clock::time_point now = Clock::now();
    if (!cause.empty()) {
        failed(watched, *running->document, cause);
        return;
    }
    watched.written = running->changes;
    watched.firstPending = watched.lastChange;
    watched.notBefore = now + std::max<Clock::duration>(kPause, (now - running->since) * kPauseFactor);
    watched.file = running->file;
    StepJournal::removeBefore(RecoveryStore::folderOf(running->file), running->journal);
    letGoOfAdopted(watched, false);
    if (!std::exchange(m_failing, false))
        return;
    AutoSaveEvent event(Strings::fromBytes(watched.file), {});
    AutoSaveEventSource::get()->fireAutoSaveWorksAgain(&event);
}

// What it was to write isn't wanted any more. It may have put the file in place all the same, which must not
// stay behind.
void AutoSaver::stopChild()
{
    if (!m_running)
        return;
    if (const auto cause = m_running->child->poll()) {
        ended(*cause);
        return;
    }
    const std::unique_ptr<Running> running = std::move(m_running);
    running->child.reset();
    std::error_code error;
    if (std::filesystem::exists(running->file, error))
        m_documents[running->document].file = running->file;
}

void AutoSaver::failed(Watched& watched, const Document& document, const std::string& cause)
{
    watched.notBefore = Clock::now() + kPauseFailed;
    if (std::exchange(m_failing, true))
        return;
    const std::wstring time = QTime::currentTime().toString(QStringLiteral("HH:mm")).toStdWString();
    AutoSaveEvent event(
        {}, DataModel::localizedFormat(
                "AutoSaveFailed",
                "Changes to \"%1%\" haven't been kept for recovery since %2%: %3%. Save the document.",
                document.displayName(), time, Strings::widen(cause)));
    AutoSaveEventSource::get()->fireAutoSaveFailed(&event);
}

} // namespace Vs::Recovery
