#include "Services/Itemhub/Routes/Call.h"

#include <charconv>
#include <optional>

namespace Itemhub::Routes {

namespace {

std::optional<qint64> numberOf(const std::string& text)
{
    qint64 number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && !text.empty() ? std::optional(number)
                                                                                     : std::nullopt;
}

} // namespace

qint64 Call::id(const std::string& name) const
{
    const auto number = numberOf(names.at(name));
    if (!number || *number <= 0)
        throw Http::Problem(404, "not_found", "There is no " + name + " \"" + names.at(name) + "\".");
    return *number;
}

QString Call::text(const std::string& name) const
{
    return QString::fromStdString(names.at(name));
}

Store::Account Call::namedAccount()
{
    const auto account = Store::findAccount(store, tenant(), text("account"));
    if (!account)
        throw Http::Problem(404, "no_account", "The customer has no account of that name.");
    return *account;
}

qint64 Call::queryNumber(const std::string& name, qint64 otherwise, qint64 lowest, qint64 highest) const
{
    const auto given = request.parameter(name);
    if (!given)
        return otherwise;
    const auto number = numberOf(*given);
    if (!number || *number < lowest || *number > highest)
        throw Http::Problem(400, "bad_parameter",
                            "\"" + name + "\" must be a number from " + std::to_string(lowest) + " to " +
                                std::to_string(highest) + ", not \"" + *given + "\".");
    return *number;
}

Store::Page Call::page(qint64 most) const
{
    constexpr qint64 kUsual = 100;
    return {queryNumber("after", 0, 0, INT64_MAX), queryNumber("limit", std::min(kUsual, most), 1, most)};
}

void Call::note(const Store::NewEvent& event)
{
    Store::addEvent(store, tenant(), account(), event);
}

void Call::noteRolesOf(qint64 account, qint64 workspace)
{
    note({.kind = "member.changed", .workspace = workspace});
    note({.kind = "member.changed", .workspace = workspace, .forAccount = account});
}

void Call::audit(const char* action, const QString& subject)
{
    Store::addAudit(store, tenant(), account(), action, subject,
                    QString::fromStdString(request.remoteAddress()));
}

} // namespace Itemhub::Routes
