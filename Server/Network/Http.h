#pragma once

#include "Server/Network/Connection.h"

#include <atomic>
#include <functional>

namespace Vs::Network {

/// Sends requests to a server on behalf of a user: authenticates, follows redirects within the server, waits
/// when the server asks for it, and retries harmless requests once. One thread at a time.
class Http
{
public:
    explicit Http(Credentials credentials);

    /// Replaces the access token in the credentials by a new one; false if that isn't possible.
    using Renewal = std::function<bool(Credentials& credentials)>;
    void renewal(Renewal renewal) { m_renewal = std::move(renewal); }
    /// Signs each request instead of sending a secret; returns the value of its "Authorization" header.
    using Signature = std::function<QByteArray(const Request& request)>;
    void signature(Signature signature) { m_signature = std::move(signature); }
    /// The longest time without a byte, from the next request on. Any thread may call this.
    void patience(std::chrono::milliseconds time) { m_patience = time; }
    /// For cleaning up on a server that has just timed out.
    void hurry(bool isInHurry) { m_isInHurry = isInHurry; }
    const Credentials& credentials() const { return m_credentials; }

    [[nodiscard]] Answer ask(Request request, const Watch& watch = {});

    /// Called on the waiting thread while a request runs, to do something else alongside it.
    void beside(std::function<void()> task) { m_beside = std::move(task); }

private:
    Answer askOnce(const Request& request, const Watch& watch);
    Answer askAs(const Request& request, const Watch& watch);
    /// Learns from a refusal how to authenticate; true if it is worth retrying.
    bool learnsLogin(const Answer& answer, const Request& request);
    /// Empty if the response is not a redirect; a failure in `answer` if it must not be followed.
    QUrl redirection(Answer& answer, const Request& request) const;
    bool waits(Answer& answer, std::chrono::milliseconds& left, const Watch& watch) const;

    Connection m_connection;
    Credentials m_credentials;
    Renewal m_renewal;
    Signature m_signature;
    std::function<void()> m_beside;
    std::atomic<std::chrono::milliseconds> m_patience{std::chrono::minutes(1)};
    bool m_digest = false, m_isInHurry = false;
};

} // namespace Vs::Network
