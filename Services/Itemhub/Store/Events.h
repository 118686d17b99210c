#pragma once

#include "Services/Itemhub/Store/Items.h"

namespace Itemhub::Store {

/// What happened, for those who listen. Ids that don't apply are 0.
struct Event
{
    qint64 serial = 0; ///< Grows; a later event has a greater one.
    QString kind;      ///< As "version.added".
    qint64 workspace = 0, item = 0, attachment = 0, version = 0;
    QString account; ///< Who did it.
    qint64 at = 0;
    qint64 request = 0; ///< Of the dashboard to the program.
};

struct NewEvent
{
    const char* kind;
    qint64 workspace = 0, item = 0, attachment = 0, version = 0;
    qint64 request = 0;
    bool forSelf = false;  ///< Nobody else's business, as a favourite.
    qint64 forAccount = 0; ///< Whose business alone it is, where that is another account.
};

void addEvent(Connection& connection, qint64 tenant, qint64 account, const NewEvent& event);
/// Those that the account may see.
[[nodiscard]] std::vector<Event> eventsAfter(Connection& connection, qint64 tenant, qint64 account,
                                             const Page& page);
/// Of all tenants.
[[nodiscard]] qint64 lastSerial(Connection& connection);

/// Removes those before a time, in milliseconds since 1970; but the newest stays, so that serials go on.
void removeEventsBefore(Connection& connection, qint64 time);

/// Notes what an administrator may want to know later.
/// @param tenant, account 0 if unknown
void addAudit(Connection& connection, qint64 tenant, qint64 account, const QString& action,
              const QString& subject, const QString& address);

struct AuditRecord
{
    qint64 id = 0;
    QString tenant, account, action, subject, address;
    qint64 at = 0;
};
/// The newest, oldest first.
[[nodiscard]] std::vector<AuditRecord> auditTrail(Connection& connection, qint64 limit);
/// Of one customer, the newest first.
/// @param page comes before its id; 0 for the newest
[[nodiscard]] std::vector<AuditRecord> auditOf(Connection& connection, qint64 tenant, const Page& page);
/// Removes those before a time, in milliseconds since 1970; but the newest stays.
void removeAuditBefore(Connection& connection, qint64 time);

} // namespace Itemhub::Store
