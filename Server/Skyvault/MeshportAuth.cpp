#include "Server/Skyvault/MeshportAuth.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "Server/Skyvault/CloudCacheManager.h"
#include "Server/Skyvault/CloudOptionGroup.h"
#include "Server/Skyvault/Private/Failures.h"
#include "Server/Skyvault/Private/Session.h"
#include "Server/Skyvault/Private/Texts.h"
#include "Server/Skyvault/SkyvaultUtilities.h"

#include <stdexcept>
#include <tuple>

namespace Vs {

using Cloud::DriveResult;
using Cloud::DriveThread;
using Cloud::DriveWatch;
using Cloud::localized;
using Cloud::Session;

struct MeshportAuth::Data
{
    bool refused = false;   ///< By the user, in the current operation.
    bool loggedOut = false; ///< In this run, so that the token file doesn't sign anybody in again.
};

namespace {

std::function<bool()>& edition()
{
    static std::function<bool()> asked;
    return asked;
}

/// The transport is not available: it, or a library that it needs, is missing.
DriveResult noTransport(const std::exception& error)
{
    return {CloudErrorState::Unsupported, error.what()};
}

/// A function of the transport, run on the request thread.
template <class Action>
DriveResult onThread(const std::wstring& title, Action&& action)
try {
    Cloud::DriveTransport& transport = Session::get().transport();
    return DriveThread::get().run(title, [&](const DriveWatch& watch) { return action(transport, watch); });
} catch (const std::runtime_error& error) {
    return noTransport(error);
}

std::wstring signingIn()
{
    return localized("CloudSigningIn", "Signing in to the cloud drive");
}

DriveResult keep(const Cloud::Access& access)
{
    return onThread(signingIn(), [&](Cloud::DriveTransport& transport, const DriveWatch&) {
        return transport.keep(access.address, access.credentials);
    });
}

DriveResult forget(const std::string& address)
{
    return onThread(
        localized("CloudSigningOut", "Signing out of the cloud drive"),
        [&](Cloud::DriveTransport& transport, const DriveWatch&) { return transport.forget(address); });
}

DriveResult begin(const Cloud::Access& access, bool mayBeAway)
try {
    return Session::get().begin(access, mayBeAway);
} catch (const std::runtime_error& error) {
    return noTransport(error);
}

/// The credentials in the keyring for the last drive.
DriveResult kept(Cloud::Access& access)
{
    access.address = Strings::narrow(CloudOptionGroup::get()->server());
    DriveResult result = onThread(signingIn(), [&](Cloud::DriveTransport& transport, const DriveWatch&) {
        return transport.kept(access.address, access.credentials);
    });
    if (access.credentials.user.empty())
        access.credentials.user = Strings::narrow(CloudOptionGroup::get()->user());
    return result;
}

/// Signs in without prompting; false if there are no credentials, or they aren't accepted.
bool resume(bool withTokenFile)
{
    Cloud::Access access;
    try {
        const auto ofFile = withTokenFile ? Cloud::accessOfTokenFile() : std::nullopt;
        if (!ofFile && !CloudOptionGroup::get()->kept())
            return false;
        if (ofFile) {
            access = *ofFile;
        } else if (const DriveResult result = kept(access); !result.isOk()) {
            Cloud::Failures::note(CloudErrorState::LoginFailed, Strings::widen(result.detail));
            return false;
        }
    } catch (const Exception& error) {
        Cloud::Failures::note(CloudErrorState::LoginFailed, error.message());
        return false;
    }
    const DriveResult result = begin(access, true);
    if (Session::get().exists()) {
        CloudCacheManager::getInstance()->uploadWaiting();
        return true;
    }
    Cloud::Failures::note(result);
    Cloud::Failures::note(CloudErrorState::LoginFailed, SkyvaultUtilities::getErrorString(result.state));
    return false;
}

} // namespace

MeshportAuth* MeshportAuth::globalInstance()
{
    static MeshportAuth auth;
    return &auth;
}

MeshportAuth::MeshportAuth() : m_data(std::make_unique<Data>())
{
    Session::get().onRenewed([this](const Cloud::Access& access) {
        if (isKept())
            Cloud::Failures::note(keep(access));
    });
}

MeshportAuth::~MeshportAuth() = default;

bool MeshportAuth::cloudDisabled() const
{
    return CloudOptionGroup::get()->cloudDisabled() || (edition() && edition()());
}

void MeshportAuth::editionDisables(std::function<bool()> asked)
{
    edition() = std::move(asked);
}

void MeshportAuth::forgetRefusal()
{
    m_data->refused = false;
}

bool MeshportAuth::login(CloudLoginDialog::ELoginMode mode)
{
    assertMainThread();
    if (cloudDisabled())
        return false;
    if (mode == CloudLoginDialog::LogIn && (Session::get().exists() || resume(!m_data->loggedOut)))
        return true;
    if ((mode == CloudLoginDialog::LogIn && m_data->refused) || !CloudLoginDialog::canAsk())
        return false;
    m_data->refused = !CloudLoginDialog::ask(mode);
    return !m_data->refused && Session::get().exists();
}

bool MeshportAuth::logout()
{
    assertMainThread();
    if (CloudOptionGroup::get()->kept()) {
        const DriveResult result = forget(Strings::narrow(CloudOptionGroup::get()->server()));
        if (!result.isOk()) {
            Cloud::Failures::note(CloudErrorState::LogoutFailed, Strings::widen(result.detail));
            return false;
        }
        CloudOptionGroup::get()->kept(false);
    }
    m_data->loggedOut = true;
    Session::get().end();
    return true;
}

DriveResult MeshportAuth::signIn(const std::string& address, const Cloud::DriveCredentials& credentials,
                                 bool keepThem)
{
    assertMainThread();
    if (cloudDisabled())
        return {CloudErrorState::Disabled, {}};
    const Cloud::Access access{address, credentials};
    DriveResult result = begin(access, false);
    if (result.isOk() && keepThem) {
        result = keep({address, credentials});
        if (!result.isOk())
            Session::get().end();
    }
    Cloud::Failures::note(result);
    if (!result.isOk())
        return result;
    auto* options = CloudOptionGroup::get();
    // Remove what the keyring had for another drive, or should no longer have.
    if (const std::string old = Strings::narrow(options->server());
        options->kept() && (old != address || !keepThem))
        std::ignore = forget(old);
    options->server(Strings::widen(address));
    options->user(Strings::widen(credentials.user));
    options->kept(keepThem);
    m_data->loggedOut = false;
    CloudCacheManager::getInstance()->uploadWaiting();
    return result;
}

DriveResult MeshportAuth::discover(const std::string& typed, Cloud::DriveOffer& offer)
{
    DriveResult result = onThread(localized("CloudLooking", "Looking for the cloud drive"),
                                  [&](Cloud::DriveTransport& transport, const DriveWatch&) {
                                      return transport.discover(typed, offer);
                                  });
    Cloud::Failures::note(result);
    return result;
}

DriveResult MeshportAuth::signInByBrowser(const Cloud::DriveOffer& offer, bool keepThem,
                                          const std::function<bool(const std::string&)>& open)
{
    Cloud::DriveCredentials credentials;
    const auto openHere = [&](const std::string& address) {
        return DriveThread::get().onMainThread([&] { return open(address); });
    };
    const DriveResult result =
        onThread(localized("CloudWaitingForBrowser", "Waiting for the sign-in in the browser"),
                 [&](Cloud::DriveTransport& transport, const DriveWatch& watch) {
                     return transport.signInByBrowser(offer, openHere, credentials, watch);
                 });
    Cloud::Failures::note(result);
    return result.isOk() ? signIn(offer.address, credentials, keepThem) : result;
}

std::string MeshportAuth::getHalvaneUrl() const
{
    const std::string& page = Session::get().webAddress();
    if (!page.empty())
        return page;
    std::string address;
    return serverUrl(address) ? address : std::string();
}

const Cloud::DriveTraits* MeshportAuth::traits() const
{
    return Session::get().traits();
}

bool MeshportAuth::isLoggedIn() const
{
    return Session::get().exists() || (CloudOptionGroup::get()->kept() && !cloudDisabled());
}

bool MeshportAuth::userName(std::wstring& name) const
{
    if (!isLoggedIn())
        return false;
    const Session& session = Session::get();
    name = Strings::widen(session.userName().empty() ? session.user() : session.userName());
    if (name.empty())
        name = CloudOptionGroup::get()->user();
    return !name.empty();
}

bool MeshportAuth::userId(std::string& id) const
{
    if (!isLoggedIn())
        return false;
    id = Session::get().exists() ? Session::get().user() : Strings::narrow(CloudOptionGroup::get()->user());
    return !id.empty();
}

bool MeshportAuth::serverUrl(std::string& url) const
{
    url = Session::get().exists() ? Session::get().address()
                                  : Strings::narrow(CloudOptionGroup::get()->server());
    return !url.empty();
}

bool MeshportAuth::isOnline() const
{
    return Session::get().isOnline();
}

bool MeshportAuth::verify()
{
    return Cloud::Failures::note(Session::get().verify()) == CloudErrorState::Success;
}

bool MeshportAuth::isKept() const
{
    const auto* options = CloudOptionGroup::get();
    return isLoggedIn() && options->kept() &&
           (!Session::get().exists() || Strings::widen(Session::get().address()) == options->server());
}

// None of the known servers has addresses that sign somebody in.
bool MeshportAuth::authenticatedUrl(const std::wstring&, std::string&, bool) const
{
    return false;
}

} // namespace Vs
