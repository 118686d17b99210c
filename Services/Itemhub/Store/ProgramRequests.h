#pragma once

#include "Services/Itemhub/Store/Database.h"

#include <optional>

namespace Itemhub::Store {

/// The dashboard's request to the account's program.
struct ProgramRequest
{
    enum class State : int {
        Waiting = 0, ///< Nobody has taken it.
        Taken = 1,
        Done = 2,
        Refused = 3, ///< By the user.
        Failed = 4,
    };

    qint64 id = 0, account = 0;
    QString name;      ///< The command's name.
    QString arguments; ///< A JSON object.
    State state = State::Waiting;
    QString detail; ///< Why it failed, as text for the user.
    qint64 expiresAt = 0;
};

[[nodiscard]] QString nameOf(ProgramRequest::State state);

/// @param ticketHash of the ticket that also claims it
qint64 addProgramRequest(Connection& connection, const ProgramRequest& request, const QString& ticketHash);
[[nodiscard]] std::optional<ProgramRequest> findProgramRequest(Connection& connection, qint64 account,
                                                               qint64 id);
/// How many of the account's requests are still open.
[[nodiscard]] qint64 waitingProgramRequests(Connection& connection, qint64 account);

/// Claims a request exclusively. Nothing if it isn't the account's, is taken already, or has expired.
[[nodiscard]] std::optional<ProgramRequest> takeProgramRequest(Connection& connection, qint64 account,
                                                               qint64 id);
[[nodiscard]] std::optional<ProgramRequest> takeProgramTicket(Connection& connection, qint64 account,
                                                              const QString& ticketHash);
/// Records the outcome of a taken request. @returns false if it isn't the account's or nobody has taken it
[[nodiscard]] bool answerProgramRequest(Connection& connection, qint64 account, qint64 id,
                                        ProgramRequest::State state, const QString& detail);

} // namespace Itemhub::Store
