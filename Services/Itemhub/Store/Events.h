#pragma once

#include "Services/Itemhub/Store/Items.h"

namespace Itemhub::Store {

/// Something that happened, for listeners. Ids that don't apply are 0.
struct Event
{
    qint64 serial = 0; ///< Strictly increasing.
    QString kind;      ///< For example "version.added".
    qint64 workspace = 0, item = 0, attachment = 0, version = 0;
    QString account; ///< Who did it.
    qint64 at = 0;
    qint64 request = 0; ///< A request of the dashboard to the program.
};

struct NewEvent
{
    const char* kind;
    qint64 workspace = 0, item = 0, attachment = 0, version = 0;
    qint64 request = 0;
    bool forSelf = false;  ///< Private to the account, like a favourite.
    qint64 forAccount = 0; ///< The account it is private to, if that is another one.
};

void addEvent(Connection& connection, qint64 tenant, qint64 account, const NewEvent& event);
/// Those visible to the account.
[[nodiscard]] std::vector<Event> eventsAfter(Connection& connection, qint64 tenant, qint64 account,
                                             const Page& page);
/// Across all tenants.
[[nodiscard]] qint64 lastSerial(Connection& connection);

/// Removes those before a time, in milliseconds since 1970, but keeps the newest, so that serials continue.
void removeEventsBefore(Connection& connection, qint64 time);

/// Records something that an administrator may want to know later.
/// @param tenant, account 0 if unknown
void addAudit(Connection& connection, qint64 tenant, qint64 account, const QString& action,
              const QString& subject, const QString& address);

struct AuditRecord
{
    qint64 id = 0;
    QString tenant, account, action, subject, address;
    qint64 at = 0;
};
/// The newest ones, oldest first.
[[nodiscard]] std::vector<AuditRecord> auditTrail(Connection& connection, qint64 limit);
/// Those of one customer, newest first.
/// @param page comes before its id; 0 for the newest
[[nodiscard]] std::vector<AuditRecord> auditOf(Connection& connection, qint64 tenant, const Page& page);
/// Removes those before a time, in milliseconds since 1970, but keeps the newest.
void removeAuditBefore(Connection& connection, qint64 time);

} // namespace Itemhub::Store
