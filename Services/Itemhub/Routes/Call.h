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

/// A request on its way to its route. Its account's permission has been checked already.
struct Call
{
    Service& service;
    Http::Request& request;
    Store::ThreadsConnection store;
    Store::TokenRecord caller;                ///< Empty for a public route.
    Store::Subject subject;                   ///< What the path refers to.
    std::map<std::string, std::string> names; ///< The path's variable parts.
    QJsonObject body;                         ///< For a route that takes JSON.
    std::string base;                         ///< The service's address as the client knows it.

    /// For lists and searches: a connection to a replica, if there is an up-to-date one.
    [[nodiscard]] Store::Connection& reads() const { return service.database.reading(); }
    [[nodiscard]] qint64 tenant() const { return caller.tenant; }
    [[nodiscard]] qint64 account() const { return caller.account; }
    /// A variable part that is a number. @throws Http::Problem with 404
    [[nodiscard]] qint64 id(const std::string& name) const;
    [[nodiscard]] QString text(const std::string& name) const;
    /// The customer's account of the path. @throws Http::Problem with 404
    [[nodiscard]] Store::Account namedAccount();

    /// The requested page of a list, from the query's "after" and "limit". @throws Http::Problem with 400
    [[nodiscard]] Store::Page page(qint64 most = 500) const;
    /// A number in the query. @throws Http::Problem with 400 if it isn't one or is out of range
    [[nodiscard]] qint64 queryNumber(const std::string& name, qint64 otherwise, qint64 lowest,
                                     qint64 highest) const;

    /// Records an event caused by this caller; within a transaction.
    void note(const Store::NewEvent& event);
    /// Records that an account's roles have changed, for that account as well, which may no longer receive
    /// the workspace's events.
    void noteRolesOf(qint64 account, qint64 workspace);
    /// Adds an entry to the administrators' audit trail.
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
