#include "Server/Network/Keyring.h"

#include <QThread>
#include <qt6keychain/keychain.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>

namespace Vs::Network {

namespace {

std::atomic<std::chrono::seconds> s_patience{std::chrono::seconds(120)};
const auto kService = QStringLiteral("Quillet");

/// The library runs its jobs through one queue, which belongs to the thread that created the first one; so
/// all of them are created on this thread.
class KeyringThread
{
public:
    static KeyringThread& get()
    {
        static KeyringThread thread;
        return thread;
    }
    QObject* place() { return &m_place; }

private:
    KeyringThread()
    {
        m_thread.setObjectName("keyring");
        m_place.moveToThread(&m_thread);
        m_thread.start();
    }
    ~KeyringThread()
    {
        m_thread.quit();
        m_thread.wait();
    }

    QThread m_thread;
    QObject m_place;
};

struct Outcome
{
    QKeychain::Error error = QKeychain::NoError;
    QString message, text;
};

/// The outcome of a job, which may arrive after the waiting caller has given up.
struct Waiting
{
    std::mutex mutex;
    std::condition_variable changed;
    std::optional<Outcome> outcome;
};

/// The last job that was given up. The library's queue is blocked until that one is answered.
class GivenUp
{
public:
    static GivenUp& get()
    {
        static GivenUp last;
        return last;
    }
    void is(std::shared_ptr<Waiting> waiting)
    {
        const std::lock_guard lock(m_mutex);
        m_last = std::move(waiting);
    }
    bool isUnanswered()
    {
        const std::lock_guard lock(m_mutex);
        if (!m_last)
            return false;
        const std::lock_guard inner(m_last->mutex);
        return !m_last->outcome;
    }

private:
    std::mutex m_mutex;
    std::shared_ptr<Waiting> m_last;
};

template <class JobType, class Prepare, class Text>
Outcome run(const std::string& key, Prepare prepare, Text text)
{
    if (GivenUp::get().isUnanswered())
        return {QKeychain::OtherError, QStringLiteral("it still owes an answer to an earlier request"), {}};
    const auto waiting = std::make_shared<Waiting>();
    QMetaObject::invokeMethod(KeyringThread::get().place(), [=] {
        auto* const job = new JobType(kService);
        job->setKey(QString::fromStdString(key));
        job->setInsecureFallback(false);
        prepare(*job);
        QObject::connect(job, &QKeychain::Job::finished, [waiting, text](QKeychain::Job* done) {
            const std::lock_guard lock(waiting->mutex);
            waiting->outcome = {done->error(), done->errorString(), text(static_cast<JobType&>(*done))};
            waiting->changed.notify_all();
        });
        job->start();
    });
    std::unique_lock lock(waiting->mutex);
    const std::chrono::seconds patience = s_patience;
    if (waiting->changed.wait_for(lock, patience, [&] { return waiting->outcome.has_value(); }))
        return *waiting->outcome;
    lock.unlock();
    GivenUp::get().is(waiting);
    return {QKeychain::OtherError, QStringLiteral("no answer within %1 s").arg(patience.count()), {}};
}

template <class JobType>
QString noText(JobType&)
{
    return {};
}

Result resultOf(const Outcome& outcome, const char* action)
{
    const auto failed = [&](CloudErrorState state, const std::string& why) {
        return Result{state, std::string(action) + " failed: " + why};
    };
    switch (outcome.error) {
    case QKeychain::NoError:
        return {};
    case QKeychain::EntryNotFound:
        return failed(CloudErrorState::NotFound, "the keyring has none");
    case QKeychain::NoBackendAvailable:
        return failed(CloudErrorState::CacheFailed, "no keyring runs in this session");
    case QKeychain::AccessDeniedByUser:
        return failed(CloudErrorState::CacheFailed, "the keyring was not unlocked");
    default:
        break;
    }
    // The library has no error code for a missing bus or keyring, only the bus's own text.
    const std::string why = outcome.message.toStdString();
    return failed(CloudErrorState::CacheFailed, "the desktop's keyring could not be used" +
                                                    (why.empty() ? std::string() : " (" + why + ")"));
}

} // namespace

void keyringPatience(std::chrono::seconds time)
{
    s_patience = time;
}

Result keepInKeyring(const std::string& key, const std::string& text)
{
    const auto outcome = run<QKeychain::WritePasswordJob>(
        key, [text](auto& job) { job.setTextData(QString::fromStdString(text)); },
        noText<QKeychain::WritePasswordJob>);
    return resultOf(outcome, "Keeping the credentials in the keyring");
}

Result keptInKeyring(const std::string& key, std::string& text)
{
    const auto outcome = run<QKeychain::ReadPasswordJob>(
        key, [](auto&) {}, [](auto& job) { return job.textData(); });
    text = outcome.text.toStdString();
    return resultOf(outcome, "Reading the credentials from the keyring");
}

Result forgetInKeyring(const std::string& key)
{
    const auto outcome = run<QKeychain::DeletePasswordJob>(
        key, [](auto&) {}, noText<QKeychain::DeletePasswordJob>);
    Result result = resultOf(outcome, "Taking the credentials out of the keyring");
    return result.state == CloudErrorState::NotFound ? Result() : result;
}

} // namespace Vs::Network
