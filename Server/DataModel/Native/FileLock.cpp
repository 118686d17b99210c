#include "Server/DataModel/Native/FileLock.h"

#include "Server/Base/OwnFiles.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/SystemCalls.h"
#include "Server/DataModel/Native/Paths.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <exception>
#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <xxhash.h>

namespace Vs::Native {
namespace {

constexpr int kTries = 5;
constexpr size_t kLongestNote = 4096;

std::string noteBeside(const std::string& file)
{
    const size_t name = file.rfind('/') + 1;
    return file.substr(0, name) + ".~" + file.substr(name) + ".lock";
}

/// Empty if there can be none.
std::string noteInState(const std::string& file)
{
    try {
        const PathInfo::Path folder = PathInfo::recoveryDirectory().parent_path() / "locks";
        OwnFiles::makeFolder(folder);
        return (folder / (std::to_string(XXH3_64bits(file.data(), file.size())) + ".lock")).string();
    } catch (const std::exception&) {
        return {};
    }
}

QString machine()
{
    std::array<char, 256> name = {};
    return ::gethostname(name.data(), name.size() - 1) == 0 ? QString::fromLocal8Bit(name.data()) : QString();
}

/// The person's name, or else the account's.
QString userName()
{
    const passwd* entry = ::getpwuid(::geteuid());
    if (!entry)
        return QString::number(::geteuid());
    const QString person = QString::fromLocal8Bit(entry->pw_gecos).section(QLatin1Char(','), 0, 0).trimmed();
    return person.isEmpty() ? QString::fromLocal8Bit(entry->pw_name) : person;
}

QJsonObject readNote(int descriptor)
{
    QByteArray text(kLongestNote, '\0');
    const ssize_t got = ::pread(descriptor, text.data(), kLongestNote, 0);
    text.truncate(static_cast<qsizetype>(std::max<ssize_t>(got, 0)));
    return QJsonDocument::fromJson(text).object();
}

bool isElsewhere(const QJsonObject& note)
{
    const QString noted = note[QLatin1String("machine")].toString();
    return !noted.isEmpty() && noted != machine();
}

FileUser userOf(const QJsonObject& note)
{
    const QDateTime since = QDateTime::fromString(note[QLatin1String("since")].toString(), Qt::ISODate);
    return {note[QLatin1String("name")].toString(QStringLiteral("?")).toStdWString(),
            note[QLatin1String("machine")].toString().toStdWString(),
            since.isValid() ? static_cast<std::time_t>(since.toSecsSinceEpoch()) : 0, isElsewhere(note)};
}

bool livesHere(const QJsonObject& note)
{
    const int process = note[QLatin1String("process")].toInt();
    return process > 0 && (::kill(process, 0) == 0 || errno == EPERM);
}

enum class Locked { Yes, No, Unknown };

Locked lock(int descriptor)
{
    if (persistent([&] { return ::flock(descriptor, LOCK_EX | LOCK_NB); }) == 0)
        return Locked::Yes;
    return errno == EWOULDBLOCK ? Locked::No : Locked::Unknown;
}

/// A child of a process that died may still write that one's recovery file, and has the lock until then.
Locked lockOfLiving(int descriptor)
{
    using namespace std::chrono_literals;
    constexpr int kMost = 100;
    Locked locked = lock(descriptor);
    for (int i = 0; i < kMost && locked == Locked::No; ++i) {
        const QJsonObject note = readNote(descriptor);
        if (note.isEmpty() || isElsewhere(note) || livesHere(note))
            break;
        std::this_thread::sleep_for(20ms);
        locked = lock(descriptor);
    }
    return locked;
}

} // namespace

std::unique_ptr<FileLock> FileLock::take(const std::string& file, FileUser& holder, bool anyway)
{
    holder = {};
    bool possible = false;
    for (const auto place : {&noteBeside, &noteInState}) {
        const std::string path = place(file);
        if (path.empty())
            continue;
        std::unique_ptr<FileLock> taken = takeAt(path, holder, anyway, possible);
        if (taken || possible)
            return taken;
    }
    return nullptr;
}

std::unique_ptr<FileLock> FileLock::takeAt(const std::string& path, FileUser& holder, bool anyway,
                                           bool& possible)
{
    constexpr int kFlags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    constexpr mode_t kForAllToRead = 0644;
    for (int tries = 0; tries < kTries; ++tries) {
        int descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | kFlags, kForAllToRead);
        const bool writable = descriptor >= 0;
        if (!writable)
            descriptor = ::open(path.c_str(), O_RDONLY | kFlags); // Another user's.
        if (descriptor < 0)
            return nullptr;
        const QJsonObject note = readNote(descriptor);
        const Locked locked = lockOfLiving(descriptor);
        const bool dead = locked == Locked::Yes || (locked == Locked::Unknown && !livesHere(note));
        if (locked == Locked::No || (isElsewhere(note) ? !anyway : !dead)) {
            possible = true;
            holder = userOf(note);
            ::close(descriptor);
            return nullptr;
        }
        // Its holder may have removed it at the same moment.
        if (writable && isStillAt(descriptor, path)) {
            possible = true;
            std::unique_ptr<FileLock> taken(new FileLock(path, descriptor));
            taken->note();
            return taken;
        }
        // A dead process's lock that can't be written gives way to a new one, if the folder permits.
        const bool gone = writable || ::unlink(path.c_str()) == 0;
        ::close(descriptor);
        if (!gone)
            return nullptr;
    }
    return nullptr;
}

void FileLock::note() const
{
    const QJsonObject note{{QLatin1String("name"), userName()},
                           {QLatin1String("machine"), machine()},
                           {QLatin1String("process"), static_cast<int>(::getpid())},
                           {QLatin1String("since"), QDateTime::currentDateTimeUtc().toString(Qt::ISODate)}};
    const QByteArray text = QJsonDocument(note).toJson();
    // On a full disk it is a lock without a name.
    if (::ftruncate(m_descriptor, 0) != 0 ||
        ::pwrite(m_descriptor, text.data(), static_cast<size_t>(text.size()), 0) != text.size())
        return;
}

FileLock::~FileLock()
{
    if (isStillAt(m_descriptor, m_path))
        ::unlink(m_path.c_str());
    ::close(m_descriptor);
}

} // namespace Vs::Native
