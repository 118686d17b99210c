#include "Services/Itemhub/Store/ProgramRequests.h"

#include <array>

namespace Itemhub::Store {

namespace {

using State = ProgramRequest::State;

/// The page polls for the outcome for a while.
constexpr qint64 kKeptMs = 3600LL * 1000;

ProgramRequest requestOf(const Rows& rows)
{
    return {.id = rows.number(0),
            .account = rows.number(1),
            .name = rows.text(2),
            .arguments = rows.text(3),
            .state = static_cast<State>(rows.number(4)),
            .detail = rows.text(5),
            .expiresAt = rows.number(6)};
}

} // namespace

QString nameOf(State state)
{
    static constexpr std::array kNames{"waiting", "taken", "done", "refused", "failed"};
    return QString::fromLatin1(kNames.at(static_cast<size_t>(state)));
}

qint64 addProgramRequest(Connection& connection, const ProgramRequest& request, const QString& ticketHash)
{
    Transaction change(connection);
    connection.run("DELETE FROM program_request WHERE expires_at < ?", {now() - kKeptMs});
    const qint64 id = newId(connection.run(
        "INSERT INTO program_request (account_id, ticket_hash, name, arguments, state, detail, expires_at) "
        "VALUES (?, ?, ?, ?, 0, '', ?) RETURNING id",
        {request.account, ticketHash, request.name, request.arguments, request.expiresAt}));
    change.commit();
    return id;
}

std::optional<ProgramRequest> findProgramRequest(Connection& connection, qint64 account, qint64 id)
{
    return firstOf(connection.run("SELECT id, account_id, name, arguments, state, detail, expires_at FROM "
                                  "program_request WHERE id = ? AND account_id = ?",
                                  {id, account}),
                   requestOf);
}

qint64 waitingProgramRequests(Connection& connection, qint64 account)
{
    Rows rows = connection.run(
        "SELECT count(*) FROM program_request WHERE account_id = ? AND state = 0 AND expires_at > ?",
        {account, now()});
    return rows.next() ? rows.number(0) : 0;
}

std::optional<ProgramRequest> takeProgramRequest(Connection& connection, qint64 account, qint64 id)
{
    Transaction change(connection);
    auto found =
        firstOf(connection.run(
                    "UPDATE program_request SET state = 1 WHERE id = ? AND account_id = ? AND state = 0 AND "
                    "expires_at > ? RETURNING id, account_id, name, arguments, state, detail, expires_at",
                    {id, account, now()}),
                requestOf);
    change.commit();
    return found;
}

std::optional<ProgramRequest> takeProgramTicket(Connection& connection, qint64 account,
                                                const QString& ticketHash)
{
    const auto id =
        firstOf(connection.run("SELECT id FROM program_request WHERE ticket_hash = ?", {ticketHash}),
                [](const Rows& rows) { return rows.number(0); });
    return id ? takeProgramRequest(connection, account, *id) : std::nullopt;
}

bool answerProgramRequest(Connection& connection, qint64 account, qint64 id, State state,
                          const QString& detail)
{
    return connection
               .run("UPDATE program_request SET state = ?, detail = ? WHERE id = ? AND account_id = ? AND "
                    "state = 1",
                    {static_cast<int>(state), detail, id, account})
               .changed() > 0;
}

} // namespace Itemhub::Store
