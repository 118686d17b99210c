#include "Server/Skyvault/Client/SignIn/Keyring.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>
#include <qt6keychain/keychain.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>

namespace Vs::Cloud {

namespace {

constexpr std::chrono::seconds kPatience{120};
const auto kService = QStringLiteral("Quillet");

/// The library hands its jobs through one queue, which belongs to the thread that made the first; so all of
/// them are made on this one.
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

/// What a job came to, which may be after whoever waits for it has given up.
struct Waiting
{
    std::mutex mutex;
    std::condition_variable changed;
    std::optional<Outcome> outcome;
};

template <class JobType, class Prepare, class Text>
Outcome run(const std::string& key, Prepare prepare, Text text)
{
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
    if (!waiting->changed.wait_for(lock, kPatience, [&] { return waiting->outcome.has_value(); }))
        return {QKeychain::OtherError, QStringLiteral("no answer within two minutes"), {}};
    return *waiting->outcome;
}

template <class JobType>
QString noText(JobType&)
{
    return {};
}

DriveResult resultOf(const Outcome& outcome, const char* action)
{
    const auto failed = [&](CloudErrorState state, const std::string& why) {
        return DriveResult{state, std::string(action) + " failed: " + why};
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
    // The library has no code for a bus or a keyring that isn't there, only the bus's own words.
    const std::string why = outcome.message.toStdString();
    return failed(CloudErrorState::CacheFailed, "the desktop's keyring could not be used" +
                                                    (why.empty() ? std::string() : " (" + why + ")"));
}

QString textOf(const DriveCredentials& credentials)
{
    const bool isBearer = credentials.kind == DriveCredentials::Kind::Bearer;
    QJsonObject object{{"kind", isBearer ? "bearer" : "password"},
                       {"user", QString::fromStdString(credentials.user)},
                       {"secret", QString::fromStdString(credentials.secret)}};
    if (isBearer) {
        object["refreshToken"] = QString::fromStdString(credentials.refreshToken);
        object["tokenAddress"] = QString::fromStdString(credentials.tokenAddress);
        object["client"] = QString::fromStdString(credentials.client);
    }
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

bool read(const QString& text, DriveCredentials& credentials)
{
    const QJsonObject object = QJsonDocument::fromJson(text.toUtf8()).object();
    const auto value = [&](const char* name) {
        return object.value(QLatin1String(name)).toString().toStdString();
    };
    if (value("secret").empty())
        return false;
    credentials.kind =
        value("kind") == "bearer" ? DriveCredentials::Kind::Bearer : DriveCredentials::Kind::Password;
    credentials.user = value("user");
    credentials.secret = value("secret");
    credentials.refreshToken = value("refreshToken");
    credentials.tokenAddress = value("tokenAddress");
    credentials.client = value("client");
    return true;
}

} // namespace

DriveResult keepInKeyring(const std::string& key, const DriveCredentials& credentials)
{
    const auto outcome = run<QKeychain::WritePasswordJob>(
        key, [text = textOf(credentials)](auto& job) { job.setTextData(text); },
        noText<QKeychain::WritePasswordJob>);
    return resultOf(outcome, "Keeping the credentials in the keyring");
}

DriveResult keptInKeyring(const std::string& key, DriveCredentials& credentials)
{
    const auto outcome = run<QKeychain::ReadPasswordJob>(
        key, [](auto&) {}, [](auto& job) { return job.textData(); });
    DriveResult result = resultOf(outcome, "Reading the credentials from the keyring");
    if (result.isOk() && !read(outcome.text, credentials))
        return {CloudErrorState::NotFound, "What the keyring has of this drive is no credential"};
    return result;
}

DriveResult forgetInKeyring(const std::string& key)
{
    const auto outcome = run<QKeychain::DeletePasswordJob>(
        key, [](auto&) {}, noText<QKeychain::DeletePasswordJob>);
    DriveResult result = resultOf(outcome, "Taking the credentials out of the keyring");
    return result.state == CloudErrorState::NotFound ? DriveResult() : result;
}

} // namespace Vs::Cloud
