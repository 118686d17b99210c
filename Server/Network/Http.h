#pragma once

#include "Server/Network/Connection.h"

#include <atomic>
#include <functional>

namespace Vs::Network {

/// Asks a server on behalf of a user: says who he is, follows redirections within the server, waits where the
/// server wants it, and asks once more where that changes nothing. One thread at a time.
class Http
{
public:
    explicit Http(Credentials credentials);

    /// Gives an access token anew; false if that isn't possible.
    using Renewal = std::function<bool(Credentials& credentials)>;
    void renewal(Renewal renewal) { m_renewal = std::move(renewal); }
    /// Signs each request instead of sending a secret along; gives the value of its header "Authorization".
    using Signature = std::function<QByteArray(const Request& request)>;
    void signature(Signature signature) { m_signature = std::move(signature); }
    /// Of time without a byte, from the next request on. Any thread may call this.
    void patience(std::chrono::milliseconds time) { m_patience = time; }
    /// For what is still to be tidied up on a server that has just been waited for in vain.
    void hurry(bool isInHurry) { m_isInHurry = isInHurry; }
    const Credentials& credentials() const { return m_credentials; }

    [[nodiscard]] Answer ask(Request request, const Watch& watch = {});

    /// Is called on the waiting thread while a request runs, so that something can be done beside it.
    void beside(std::function<void()> task) { m_beside = std::move(task); }

private:
    Answer askOnce(const Request& request, const Watch& watch);
    Answer askAs(const Request& request, const Watch& watch);
    /// Learns from a refusal how to log in; true if it is worth asking again.
    bool learnsLogin(const Answer& answer, const Request& request);
    /// Empty if the answer leads nowhere else; a failure in `answer` if it may not be followed.
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
