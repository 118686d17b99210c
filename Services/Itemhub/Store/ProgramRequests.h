#pragma once

#include "Services/Itemhub/Store/Database.h"

#include <optional>

namespace Itemhub::Store {

/// What the dashboard asks the account's program for.
struct ProgramRequest
{
    enum class State : int {
        Waiting = 0, ///< Nobody has taken it.
        Taken = 1,
        Done = 2,
        Refused = 3, ///< By the person.
        Failed = 4,
    };

    qint64 id = 0, account = 0;
    QString name;      ///< Of the command.
    QString arguments; ///< A JSON object.
    State state = State::Waiting;
    QString detail; ///< Why it failed, for the person.
    qint64 expiresAt = 0;
};

[[nodiscard]] QString nameOf(ProgramRequest::State state);

/// @param ticketHash of the ticket by which it can be taken, too
qint64 addProgramRequest(Connection& connection, const ProgramRequest& request, const QString& ticketHash);
[[nodiscard]] std::optional<ProgramRequest> findProgramRequest(Connection& connection, qint64 account,
                                                               qint64 id);
/// How many of the account's could still be taken.
[[nodiscard]] qint64 waitingProgramRequests(Connection& connection, qint64 account);

/// Takes a request, which nobody else can any more. Nothing if it isn't the account's, was taken already, or
/// has expired.
[[nodiscard]] std::optional<ProgramRequest> takeProgramRequest(Connection& connection, qint64 account,
                                                               qint64 id);
[[nodiscard]] std::optional<ProgramRequest> takeProgramTicket(Connection& connection, qint64 account,
                                                              const QString& ticketHash);
/// Notes what came of a taken request. @returns false if it isn't the account's, or nobody has it
[[nodiscard]] bool answerProgramRequest(Connection& connection, qint64 account, qint64 id,
                                        ProgramRequest::State state, const QString& detail);

} // namespace Itemhub::Store
