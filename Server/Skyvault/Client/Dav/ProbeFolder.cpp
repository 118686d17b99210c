#include "Server/Skyvault/Client/Dav/ProbeFolder.h"

#include <QCryptographicHash>
#include <QSysInfo>
#include <QUuid>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <unistd.h>

namespace Vs::Cloud {

namespace {

/// The prefix of this machine's probe folders, followed by the process number.
std::string prefix()
{
    const QByteArray machine = QSysInfo::machineUniqueId() + QSysInfo::machineHostName().toUtf8();
    const QByteArray mark = QCryptographicHash::hash(machine, QCryptographicHash::Sha1).toHex().left(8);
    return ownPrefix() + "probe-" + mark.toStdString() + '-';
}

} // namespace

ProbeFolder::ProbeFolder(Session& session, const std::string& within)
    : m_session(session),
      m_within(within),
      m_path(joined(within, prefix() + std::to_string(::getpid()) + '-' +
                                QUuid::createUuid().toString(QUuid::Id128).left(8).toStdString())),
      m_note(session.leftovers.note(m_path + '/'))
{
}

ProbeFolder::~ProbeFolder()
{
    if (remove(m_path))
        m_note.drop();
}

DriveResult ProbeFolder::removeOthers(const DriveWatch& watch) const
{
    std::vector<DriveEntry> entries;
    DriveResult listed = m_session.list(m_within, entries, watch, Session::Names::All);
    const std::string begin = joined(m_within, prefix());
    for (const DriveEntry& entry : entries) {
        if (!entry.isFolder || !entry.path.starts_with(begin))
            continue;
        const int process = std::atoi(entry.path.c_str() + begin.size());
        if (process > 0 && ::kill(process, 0) != 0 && errno == ESRCH)
            static_cast<void>(remove(entry.path));
    }
    return listed;
}

bool ProbeFolder::remove(const std::string& path) const
{
    // A lost response is worth a second try: nothing of ours should remain.
    const Request request{.method = "DELETE", .url = m_session.address.of(path, true)};
    Answer answer = m_session.http.ask(request);
    if (answer.isLost())
        answer = m_session.http.ask(request);
    return answer.isOk() || answer.status == 404;
}

} // namespace Vs::Cloud
