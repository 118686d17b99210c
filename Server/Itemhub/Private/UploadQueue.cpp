#include "Server/Itemhub/Private/UploadQueue.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Task.h"
#include "Server/Itemhub/ItemhubEvents.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "Server/Itemhub/Private/Documents.h"
#include "Server/Itemhub/Private/Places.h"
#include "Server/Itemhub/Private/QueueLock.h"
#include "Server/Itemhub/Private/Session.h"
#include "Server/Itemhub/Private/SignIn.h"
#include "Server/Itemhub/Private/Upload.h"

#include <algorithm>
#include <set>
#include <utility>

namespace Vs::Itemhub {
namespace {

using Kind = Web::ItemhubException::Kind;
using State = QueueEntry::State;

constexpr std::chrono::seconds kLongestPause{300};
/// While another run of the program uploads.
constexpr std::chrono::seconds kUntilUnlocked{5};
/// A page between here and the service may respond in its place for a while.
constexpr int kMostNonsense = 5;

/// `version` is the one that has just arrived; 0 for none.
void tellState(const boost::filesystem::path& document, std::int64_t version = 0)
{
    ItemhubUtilities::results().post([document, version] {
        ItemhubUploadEvent event(document, version);
        ItemhubEventSource::get()->fireUploadStateChanged(&event);
    });
}

void tellFailure(const QueueEntry& entry)
{
    ItemhubUtilities::results().post([entry] {
        ItemhubUtilities::get()->fireErrorMessage(entry.reasonText());
        ItemhubEvent event;
        ItemhubEventSource::get()->fireRecoveryMessage(&event);
    });
}

/// Whether the service may respond differently to the same request later.
bool isPassing(Kind kind)
{
    return kind == Kind::Busy || kind == Kind::NotSignedIn;
}

} // namespace

UploadQueue& UploadQueue::get()
{
    static auto* const queue = new UploadQueue;
    return *queue;
}

void UploadQueue::add(const WorkFile& work, const std::string& label, bool isFound)
{
    {
        const std::lock_guard lock(m_mutex);
        const FileStamp now = FileStamp::of(work.file);
        const std::vector<QueueEntry> entries = QueueEntry::all(work.account);
        const auto queued = std::find_if(entries.begin(), entries.end(), [&](const QueueEntry& entry) {
            return entry.document == work.file && entry.stamp == now;
        });
        if (queued == entries.end()) {
            QueueEntry entry;
            entry.account = work.account;
            entry.document = work.file;
            entry.stamp = now;
            entry.itemId = work.itemId;
            entry.label = label;
            entry.key = SignIn::newKey();
            entry.isFound = isFound;
            entry.create();
        } else if (!isFound && !queued->isPosted) {
            // Found on disk between the save and its notification.
            QueueEntry entry = *queued;
            entry.label = label;
            entry.isFound = false;
            entry.write();
        }
    }
    tellState(work.file);
    wake();
}

void UploadQueue::begin()
{
    {
        const std::lock_guard lock(m_mutex);
        m_scans = true;
        m_toldOfSignIn = false;
        m_ends = m_cancelled = false;
        if (!m_thread.joinable())
            m_thread = std::thread([this] { loop(); });
    }
    wake();
}

void UploadQueue::wake()
{
    const std::lock_guard lock(m_mutex);
    m_pausedUntil.reset();
    m_nextPause = std::chrono::seconds(1);
    m_isWoken = true;
    m_changed.notify_all();
}

void UploadQueue::stop()
{
    std::thread thread;
    {
        const std::lock_guard lock(m_mutex);
        m_ends = true;
        m_cancelled = true;
        m_changed.notify_all();
        thread.swap(m_thread);
    }
    if (thread.joinable())
        thread.join();
}

void UploadQueue::loop()
{
    std::unique_lock lock(m_mutex);
    while (!m_ends) {
        m_isWoken = false;
        if (m_scans) {
            lock.unlock();
            queueFound();
            lock.lock();
            m_scans = false;
        }
        const bool isPaused = m_pausedUntil && Clock::now() < *m_pausedUntil;
        if (!isPaused && !m_ends && next()) {
            lock.unlock();
            const bool goesOn = uploadNext();
            lock.lock();
            if (!goesOn)
                pause();
            continue;
        }
        const auto isWanted = [this] { return m_ends || m_isWoken; };
        if (m_pausedUntil)
            m_changed.wait_until(lock, *m_pausedUntil, isWanted);
        else
            m_changed.wait(lock, isWanted);
        if (m_pausedUntil && Clock::now() >= *m_pausedUntil)
            m_pausedUntil.reset();
    }
}

void UploadQueue::pause()
{
    if (m_isWoken)
        return;
    m_pausedUntil = Clock::now() + m_nextPause;
    m_nextPause = std::min(2 * m_nextPause, kLongestPause);
}

std::optional<QueueEntry> UploadQueue::next() const
{
    if (!Session::get().store())
        return std::nullopt;
    std::set<Path> waiting;
    for (QueueEntry& entry : QueueEntry::all(Session::get().facts().name)) {
        if (waiting.contains(entry.document))
            continue;
        if (entry.state == State::Waiting)
            return std::move(entry);
        waiting.insert(entry.document);
    }
    return std::nullopt;
}

bool UploadQueue::uploadNext()
{
    const std::shared_ptr<ItemStore> store = Session::get().store();
    if (!store)
        return false;
    const QueueLock only(Places::queue(Session::get().facts().name));
    if (!only.isHeld()) {
        const std::lock_guard lock(m_mutex);
        m_nextPause = kUntilUnlocked;
        return false;
    }
    std::optional<QueueEntry> entry;
    {
        const std::lock_guard lock(m_mutex);
        entry = next();
        if (!entry)
            return true;
        m_uploading = entry->link;
    }
    tellState(entry->document);
    std::int64_t version = 0;
    const Outcome outcome = upload(*entry, store, version);
    {
        const std::lock_guard lock(m_mutex);
        m_uploading.clear();
        if (outcome == Outcome::Done) {
            entry->remove();
            m_nextPause = std::chrono::seconds(1);
        }
    }
    tellState(entry->document, version);
    return outcome != Outcome::Later;
}

UploadQueue::Outcome UploadQueue::upload(QueueEntry& entry, const std::shared_ptr<ItemStore>& store,
                                         std::int64_t& version)
try {
    const Watch watch{[this](auto, auto) { return !m_cancelled; }};
    version = Upload(entry, *store, Session::get().facts().account.name, watch).run();
    Session::get().answered(store.get(), true);
    m_nonsense = 0;
    return Outcome::Done;
} catch (const ItemStore::Cancelled&) {
    return Outcome::Later;
} catch (const Web::ConnectionException&) {
    Session::get().answered(store.get(), false);
    return Outcome::Later;
} catch (const Web::PayloadException& error) {
    return ++m_nonsense < kMostNonsense ? Outcome::Later : failed(entry, State::Failed, error.what());
} catch (const Web::ItemhubException& error) {
    Session::get().answered(store.get(), true);
    if (error.kind() == Kind::NotSignedIn)
        tellOfSignIn(error.message());
    if (isPassing(error.kind()))
        return Outcome::Later;
    entry.other = error.latest();
    return failed(entry, error.kind() == Kind::Outdated ? State::Outdated : State::Failed, error.what());
} catch (const std::exception& error) {
    return failed(entry, State::Failed, error.what());
}

void UploadQueue::tellOfSignIn(const std::wstring& message)
{
    {
        const std::lock_guard lock(m_mutex);
        if (std::exchange(m_toldOfSignIn, true))
            return;
    }
    ItemhubUtilities::get()->fireErrorMessage(message);
}

UploadQueue::Outcome UploadQueue::failed(QueueEntry& entry, State state, const std::string& reason)
{
    {
        const std::lock_guard lock(m_mutex);
        entry.state = state;
        entry.reason = reason;
        m_nonsense = 0;
        try {
            entry.write();
        } catch (const Exception&) {
            // The disk is full: it fails and is reported again after the pause.
            return Outcome::Later;
        }
    }
    tellFailure(entry);
    return Outcome::Given;
}

void UploadQueue::queueFound()
{
    if (!Session::get().store())
        return;
    for (const WorkFile& work : WorkFiles::get().all(Session::get().facts().name)) {
        if (!work.isChanged())
            continue;
        try {
            add(work, {}, true);
        } catch (const Exception& error) {
            ItemhubUtilities::get()->fireErrorMessage(error.message());
        }
    }
    Documents::trim(Session::get().facts().name);
}

std::vector<QueueEntry> UploadQueue::entries() const
{
    const std::lock_guard lock(m_mutex);
    std::vector<QueueEntry> entries;
    for (const std::string& account : Places::accounts())
        for (QueueEntry& entry : QueueEntry::all(account)) {
            if (entry.link == m_uploading)
                entry.state = State::Uploading;
            entries.push_back(std::move(entry));
        }
    return entries;
}

std::optional<QueueEntry> UploadQueue::find(const Path& link) const
{
    const std::vector<std::string> accounts = Places::accounts();
    const bool isQueue = std::any_of(accounts.begin(), accounts.end(), [&](const std::string& account) {
        return link.parent_path() == Places::queue(account);
    });
    return isQueue ? QueueEntry::read(Path(link).replace_extension(".json")) : std::nullopt;
}

bool UploadQueue::retry(const Path& link)
{
    Path document;
    {
        const std::lock_guard lock(m_mutex);
        std::optional<QueueEntry> entry = find(link);
        if (!entry)
            return false;
        document = entry->document;
        if (entry->state != State::Waiting) {
            entry->onTop = entry->state == State::Outdated;
            // The refused request may be one that the service would only refuse again.
            entry->isPosted = entry->isPosted && entry->onTop;
            entry->state = State::Waiting;
            entry->reason.clear();
            entry->write();
        }
    }
    tellState(document);
    wake();
    return true;
}

void UploadQueue::giveUp(const Path& link)
{
    Path document;
    {
        const std::lock_guard lock(m_mutex);
        const std::optional<QueueEntry> entry = find(link);
        if (!entry || entry->state == State::Waiting)
            return;
        document = entry->document;
        // So that it isn't found again.
        WorkFiles::get().change(document, [&](WorkFile& work) { work.stamp = entry->stamp; });
        entry->remove();
    }
    tellState(document);
    wake();
}

bool UploadQueue::isBusy() const
{
    const std::lock_guard lock(m_mutex);
    return Session::get().store() && (!m_uploading.empty() || m_scans || next().has_value());
}

} // namespace Vs::Itemhub
