#include "Server/Skyvault/Private/Session.h"

#include "Server/Base/FolderName.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/QtApplication.h"
#include "Server/Base/SiblingLibrary.h"
#include "Server/Skyvault/CloudEvents.h"
#include "Server/Skyvault/Private/Failures.h"
#include "Server/Skyvault/Private/Texts.h"

#include <QCryptographicHash>
#include <QUrl>

#include <algorithm>
#include <cctype>

namespace Vs::Cloud {
namespace {

/// Whether the server may answer the same request later. A temporary condition is no reason to end a session.
bool isPassing(CloudErrorState state)
{
    return state == CloudErrorState::Unreachable || state == CloudErrorState::ServerError ||
           state == CloudErrorState::TooManyRequests;
}

} // namespace

Session& Session::get()
{
    static auto* const session = new Session;
    return *session;
}

DriveTransport& Session::transport()
{
    QtApplication::need();
    if (!m_transport) {
        using Entry = DriveTransport* (*)();
        m_transport = SiblingLibrary("libVsSkyvaultClient10.so").function<Entry>("quilletDriveTransport")();
    }
    return *m_transport;
}

DriveResult Session::Link::connect(const DriveWatch& watch)
{
    if (connected)
        return {};
    DriveResult result = drive->connect(known, watch);
    connected = result.isOk();
    return result;
}

Session::Facts Session::Link::facts() const
{
    if (!connected)
        return {};
    return {drive->traits(), drive->credentials(), drive->userName(), drive->webAddress()};
}

DriveResult Session::work(Link& link, Facts& facts, const Job& job, const DriveWatch& watch)
{
    DriveResult result = link.connect(watch);
    if (result.isOk() && job)
        result = job(*link.drive, watch);
    facts = link.facts();
    return result;
}

DriveResult Session::begin(const Access& access, bool mayBeAway)
{
    const auto link = std::make_shared<Link>();
    const auto facts = std::make_shared<Facts>();
    const std::string folder = folderOf(access.address, access.credentials.user).string();
    link->known = keptTraits(folder + ".json");
    DriveTransport& transport = this->transport();
    DriveResult result = DriveThread::get().run(localized("CloudSigningIn", "Signing in to the cloud drive"),
                                                [=, &transport](const DriveWatch& watch) {
                                                    link->drive =
                                                        transport.drive(access.address, access.credentials);
                                                    link->drive->notesIn(folder + ".left");
                                                    return work(*link, *facts, {}, watch);
                                                });
    if (!result.isOk() && !(mayBeAway && isPassing(result.state))) {
        DriveThread::get().post([link](const DriveWatch&) { return link->drive.reset(), DriveResult(); }, {});
        return result;
    }
    end();
    m_link = link;
    m_access = access;
    m_online = result.isOk();
    learn(*facts);
    CloudEvent event;
    CloudEventSource::get()->fireCloudSessionChanged(&event);
    return result;
}

void Session::end()
{
    if (!m_link)
        return;
    // A drive is destroyed on the thread that used it.
    DriveThread::get().post([link = m_link](const DriveWatch&) { return link->drive.reset(), DriveResult(); },
                            {});
    m_link.reset();
    m_access = {};
    m_facts = {};
    m_online = false;
    CloudEvent event;
    CloudEventSource::get()->fireCloudSessionChanged(&event);
}

void Session::learn(const Facts& facts)
{
    if (!facts.traits)
        return;
    const bool isNew = !m_facts.traits || m_facts.traits->probed != facts.traits->probed;
    m_facts = facts;
    if (isNew)
        keepTraits(folderOf(address(), user()).string() + ".json", *facts.traits);
    if (facts.credentials.secret == m_access.credentials.secret &&
        facts.credentials.refreshToken == m_access.credentials.refreshToken)
        return;
    m_access.credentials.secret = facts.credentials.secret;
    m_access.credentials.refreshToken = facts.credentials.refreshToken;
    if (m_keeper)
        m_keeper(m_access);
}

void Session::ended(const DriveResult& result)
{
    const bool online = result.state != CloudErrorState::Unreachable;
    if (result.state == CloudErrorState::Cancelled || online == m_online || !exists())
        return;
    m_online = online;
    CloudEvent event;
    CloudEventSource::get()->fireCloudSessionChanged(&event);
}

DriveResult Session::run(const std::wstring& title, const Job& job)
{
    if (!m_link)
        return {CloudErrorState::LoginFailed, {}};
    const auto link = m_link;
    const auto facts = std::make_shared<Facts>();
    DriveResult result = DriveThread::get().run(
        title, [=](const DriveWatch& watch) { return work(*link, *facts, job, watch); });
    if (link == m_link) {
        learn(*facts);
        ended(result);
    }
    return result;
}

void Session::post(const Job& job, const DriveThread::Done& done)
{
    if (!m_link)
        return;
    const auto link = m_link;
    const auto facts = std::make_shared<Facts>();
    DriveThread::get().post([=](const DriveWatch& watch) { return work(*link, *facts, job, watch); },
                            [=, this](const DriveResult& result) {
                                if (link == m_link) {
                                    learn(*facts);
                                    ended(result);
                                }
                                done(result);
                            });
}

DriveResult Session::verify()
{
    return run(localized("CloudSigningIn", "Signing in to the cloud drive"),
               [](Drive& drive, const DriveWatch&) {
                   DriveEntry root;
                   return drive.find("/", root);
               });
}

// An address typed with a trailing slash is the same drive.
boost::filesystem::path Session::folderOf(const std::string& written, const std::string& user)
{
    const std::string address = written.substr(0, written.find_last_not_of('/') + 1);
    const QUrl url(QString::fromStdString(address));
    const QByteArray digest = QCryptographicHash::hash(QByteArray::fromStdString(address + '\n' + user),
                                                       QCryptographicHash::Sha256);
    constexpr int kDigits = 8;
    return PathInfo::cloudCacheDirectory() / (folderName(url.host().toStdString()) + '-' + folderName(user) +
                                              '-' + digest.toHex().left(kDigits).toStdString());
}

} // namespace Vs::Cloud
