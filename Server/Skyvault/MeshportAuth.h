#pragma once

#include "Server/Skyvault/BaseAuth.h"
#include "Server/Skyvault/CloudLoginDialog.h"
#include "Server/Skyvault/Drive.h"

namespace Vs {

/// The user's session with the cloud drive. A run without a window uses the credentials from the keyring, or
/// the token from the file named by QUILLET_CLOUD_TOKEN_FILE. Main thread only.
class MeshportAuth : public BaseAuth
{
public:
    static MeshportAuth* globalInstance();

    /// By the user's option or by the program's edition.
    [[nodiscard]] bool cloudDisabled() const;
    /// `asked` tells whether the edition has no cloud drive; with null, it has one.
    static void editionDisables(std::function<bool()> asked);

    /// True if somebody is signed in, prompting if necessary. Stored credentials count even if the server
    /// can't be reached. A refusal holds until the user starts something new: the dialog isn't shown twice
    /// for one command.
    [[nodiscard]] bool login(CloudLoginDialog::ELoginMode mode);
    /// The user starts something new: after an earlier refusal to sign in, the dialog may be shown again.
    void forgetRefusal();
    /// Deletes the credentials, here and in the keyring; pending uploads stay. False if the keyring didn't
    /// release them.
    [[nodiscard]] bool logout();

    /// Signs in with credentials: connects, probes the server if needed, and stores them in the keyring if
    /// `keep` is set. On failure nobody is signed in and nothing is stored.
    [[nodiscard]] Cloud::DriveResult signIn(const std::string& address,
                                            const Cloud::DriveCredentials& credentials, bool keep);
    [[nodiscard]] Cloud::DriveResult discover(const std::string& typed, Cloud::DriveOffer& offer);
    [[nodiscard]] Cloud::DriveResult signInByBrowser(const Cloud::DriveOffer& offer, bool keep,
                                                     const std::function<bool(const std::string&)>& open);

    /// The page on which the user sees the drive; empty if no drive is set.
    [[nodiscard]] std::string getHalvaneUrl() const;

    /// How the server was found to behave; null while nobody is signed in.
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
