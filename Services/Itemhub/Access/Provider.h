#pragma once

#include "Services/Itemhub/Config/Config.h"

#include <chrono>
#include <mutex>
#include <optional>

namespace Itemhub::Access {

/// An external sign-in provider (OpenID Connect). Thread-safe.
class Provider
{
public:
    explicit Provider(const ProviderConfig& config) : m_config(config) {}

    [[nodiscard]] bool isThere() const { return !m_config.issuer.isEmpty(); }
    [[nodiscard]] const ProviderConfig& config() const { return m_config; }
    /// Its display name; empty if there is none.
    [[nodiscard]] QString title() const;

    /// What the browser takes there, and what is checked when it comes back.
    struct Visit
    {
        QString state, verifier, nonce;
        QString redirect; ///< Where the browser returns to.
    };
    /// The address to send the browser to. @throws std::runtime_error if the provider can't be reached
    [[nodiscard]] QString place(const Visit& visit);
    /// The provider's permanent identifier of the user. @throws std::runtime_error that says what is wrong
    [[nodiscard]] QString subjectOf(const Visit& visit, const QString& code);

private:
    struct Places
    {
        QString authorization, token;
        std::chrono::steady_clock::time_point asked;
    };
    [[nodiscard]] Places places();

    const ProviderConfig& m_config;
    std::mutex m_mutex;
    std::optional<Places> m_places; ///< As recently reported by the provider.
};

} // namespace Itemhub::Access
