#pragma once

#include "Server/Skyvault/BaseAuth.h"
#include "Server/Skyvault/CloudLoginDialog.h"
#include "Server/Skyvault/Drive.h"

namespace Vs {

/// The user's session with the cloud drive. A run without a window takes the credentials that the keyring
/// has, or the token of the file that QUILLET_CLOUD_TOKEN_FILE names. Main thread only.
class MeshportAuth : public BaseAuth
{
public:
    static MeshportAuth* globalInstance();

    /// By the user's option, or by the edition of the program.
    [[nodiscard]] bool cloudDisabled() const;
    /// Who knows whether the edition has no cloud drive; null for nobody, and then it has one.
    static void editionDisables(std::function<bool()> asked);

    /// True when somebody is signed in, asking if needed. Kept credentials count also while the server can't
    /// be reached. A refusal stays until the person asks for it himself: the dialog isn't shown twice for one
    /// command.
    [[nodiscard]] bool login(CloudLoginDialog::ELoginMode mode);
    /// A person begins something anew: who refused to sign in before may be asked again.
    void forgetRefusal();
    /// Forgets the credentials, here and in the keyring; what waits to be uploaded stays. False if the
    /// keyring didn't give them up.
    [[nodiscard]] bool logout();

    /// Signs in with credentials: connects, probes the server at need, and, where `keep` says so, keeps them
    /// in the keyring. On any failure nobody is signed in and nothing is kept.
    [[nodiscard]] Cloud::DriveResult signIn(const std::string& address,
                                            const Cloud::DriveCredentials& credentials, bool keep);
    [[nodiscard]] Cloud::DriveResult discover(const std::string& typed, Cloud::DriveOffer& offer);
    [[nodiscard]] Cloud::DriveResult signInByBrowser(const Cloud::DriveOffer& offer, bool keep,
                                                     const std::function<bool(const std::string&)>& open);

    /// The page where the user sees the drive; empty when no drive is set.
    [[nodiscard]] std::string getHalvaneUrl() const;

    /// What the server was found to do; null while nobody is signed in.
    const Cloud::DriveTraits* traits() const;

    bool isLoggedIn() const override;
    bool userName(std::wstring& name) const override;
    bool userId(std::string& id) const override;
    bool serverUrl(std::string& url) const override;
    bool isOnline() const override;
    bool verify() override;
    bool isKept() const override;
    bool authenticatedUrl(const std::wstring& url, std::string& result, bool encoded) const override;

private:
    MeshportAuth();
    ~MeshportAuth() override;
    struct Data;
    std::unique_ptr<Data> m_data;
};

} // namespace Vs
