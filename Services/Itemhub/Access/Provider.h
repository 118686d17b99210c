#pragma once

#include "Services/Itemhub/Config/Config.h"

#include <chrono>
#include <mutex>
#include <optional>

namespace Itemhub::Access {

/// An outside provider of sign-ins (OpenID Connect). Thread-safe.
class Provider
{
public:
    explicit Provider(const ProviderConfig& config) : m_config(config) {}

    [[nodiscard]] bool isThere() const { return !m_config.issuer.isEmpty(); }
    [[nodiscard]] const ProviderConfig& config() const { return m_config; }
    /// What people call it; empty if there is none.
    [[nodiscard]] QString title() const;

    /// What goes there with the browser, and is compared when it comes back.
    struct Visit
    {
        QString state, verifier, nonce;
        QString redirect; ///< Where the browser comes back to.
    };
    /// The address that the browser is sent to. @throws std::runtime_error if the provider can't be reached
    [[nodiscard]] QString place(const Visit& visit);
    /// The provider's lasting name of who was there. @throws std::runtime_error with what is wrong
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
    std::optional<Places> m_places; ///< As the provider told them not long ago.
};

} // namespace Itemhub::Access
