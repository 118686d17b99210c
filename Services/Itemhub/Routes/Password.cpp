#include "Services/Itemhub/Routes/Password.h"

#include "Services/Itemhub/Access/Secrets.h"
#include "Services/Itemhub/Blobs/Digest.h"

namespace Itemhub::Routes {

namespace {

QString hashed(const QString& text)
{
    return QString::fromStdString(Blobs::Digest::hexOf(text.toStdString()));
}

QString accountSubject(const QString& customer, const QString& name)
{
    return hashed("account\n" + customer + '\n' + name);
}

/// What is throttled: the account, from any address, and the address, for any account.
QStringList throttledBy(const Call& call, const QString& customer, const QString& name)
{
    return {accountSubject(customer, name),
            hashed("address\n" + QString::fromStdString(call.request.remoteAddress()))};
}

Http::Problem refused()
{
    return Http::Problem(401, "sign_in", "The customer, the name or the password is not right.")
        .with("WWW-Authenticate", "Bearer realm=\"itemhub\"");
}

} // namespace

Store::Account accountOf(Call& call, const QString& customer, const QString& name, const QString& password)
{
    const QStringList subjects = throttledBy(call, customer, name);
    for (const QString& subject : subjects)
        if (const qint64 wait = Store::waitOf(call.store, subject); wait > 0)
            throw Http::Problem(429, "too_many_failures", "Too many wrong passwords; wait before the next.")
                .with("Retry-After", std::to_string(wait / 1000 + 1));

    const auto tenant = Store::findTenant(call.store, customer);
    const auto account = tenant ? Store::findAccount(call.store, *tenant, name) : std::nullopt;
    // The same work for names that don't exist, so that timing reveals nothing.
    const bool matches = Access::passwordMatches(account ? account->passwordHash : QString(), password);
    if (!account || !matches || account->disabled) {
        changing(call, [&] {
            for (const QString& subject : subjects)
                Store::noteFailure(call.store, subject);
            call.caller.tenant = tenant.value_or(0);
            call.audit("sign-in refused", name);
            return 0;
        });
        throw refused();
    }
    call.caller.tenant = account->tenant;
    call.caller.account = account->id;
    return *account;
}

void noteSignIn(Call& call, const QString& customer, const Store::Account& account, const QString& label)
{
    Store::forgetFailures(call.store, accountSubject(customer, account.name));
    call.audit("sign-in", label);
}

} // namespace Itemhub::Routes
