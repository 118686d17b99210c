#pragma once

#include "Services/Itemhub/Http/Message.h"
#include "Services/Itemhub/Routes/Service.h"
#include "Services/Itemhub/Store/Events.h"
#include "Services/Itemhub/Store/Subjects.h"
#include "Services/Itemhub/Store/Tokens.h"

#include <QJsonObject>

#include <map>
#include <string>

namespace Itemhub::Routes {

/// A request on its way to its route. That its account may do this was seen to before.
struct Call
{
    Service& service;
    Http::Request& request;
    Store::ThreadsConnection store;
    Store::TokenRecord caller;                ///< Of a public route, nobody.
    Store::Subject subject;                   ///< What the path names.
    std::map<std::string, std::string> names; ///< The path's variable parts.
    QJsonObject body;                         ///< Of a route that takes JSON.
    std::string base;                         ///< The service's address as the client knows it.

    /// For lists and searches: a replica's connection, where one has all that there is by now.
    [[nodiscard]] Store::Connection& reads() const { return service.database.reading(); }
    [[nodiscard]] qint64 tenant() const { return caller.tenant; }
    [[nodiscard]] qint64 account() const { return caller.account; }
    /// A variable part that is a number. @throws Http::Problem with 404
    [[nodiscard]] qint64 id(const std::string& name) const;
    [[nodiscard]] QString text(const std::string& name) const;

    /// The part of a list that is wanted, from the query's "after" and "limit". @throws Http::Problem with
    /// 400
    [[nodiscard]] Store::Page page(qint64 most = 500) const;
    /// A number of the query. @throws Http::Problem with 400 if it is none, or out of the range
    [[nodiscard]] qint64 queryNumber(const std::string& name, qint64 otherwise, qint64 lowest,
                                     qint64 highest) const;

    /// Notes an event of this caller; within a transaction.
    void note(const Store::NewEvent& event);
    /// Notes that an account's roles are others, also for itself: it may hear nothing of the workspace any
    /// more.
    void noteRolesOf(qint64 account, qint64 workspace);
    /// Notes it for the administrator.
    void audit(const char* action, const QString& subject);
};

/// Runs the work in a transaction. @returns what it returns
template <class Work>
auto changing(Call& call, Work work)
{
    Store::Transaction change(call.store);
    auto result = work();
    change.commit();
    return result;
}

} // namespace Itemhub::Routes
