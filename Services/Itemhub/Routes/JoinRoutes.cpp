#include "Services/Itemhub/Routes/JoinRoutes.h"

#include "Services/Itemhub/Access/Grants.h"
#include "Services/Itemhub/Access/PageSession.h"
#include "Services/Itemhub/Routes/Clean.h"
#include "Services/Itemhub/Routes/DashboardRoutes.h"
#include "Services/Itemhub/Routes/Form.h"
#include "Services/Itemhub/Routes/SignInPage.h"
#include "Services/Itemhub/Store/Invitations.h"

namespace Itemhub::Routes {

namespace {

SignInPage pageFor(const Call& call, const QString& code)
{
    SignInPage page;
    page.kind = SignInPage::Kind::Join;
    page.languages = call.request.header("Accept-Language");
    page.action = "join";
    page.hidden = {{"code", code}};
    return page;
}

Http::Response with(int status, const SignInPage& page, const char* problem)
{
    Http::Response response = page.response(problem);
    response.status = status;
    return response;
}

/// A sign-in form instead, since the invitation is no longer valid.
Http::Response gone(const Call& call)
{
    SignInPage page;
    page.kind = SignInPage::Kind::Dashboard;
    page.languages = call.request.header("Accept-Language");
    page.action = "../dashboard";
    return with(410, page, "invitation_used");
}

Http::Response join(Call& call, const Store::Invitation& invitation, const QString& name,
                    const QString& passwordHash)
{
    const qint64 account = Store::addAccount(call.store, invitation.tenant, name, passwordHash);
    Store::setMembership(call.store, account, invitation.workspace, invitation.role);
    call.caller.tenant = invitation.tenant;
    call.caller.account = account;
    call.audit("joined", name);
    call.note({.kind = "member.changed", .workspace = invitation.workspace});
    return beginPageSession(call, account, Store::Role::Admin, "../dashboard");
}

} // namespace

Http::Response showJoin(Call& call)
{
    const QString code = QString::fromStdString(call.request.parameter("code").value_or(""));
    if (!Store::findInvitation(call.store, Access::hashOf(code)))
        return gone(call);
    return with(200, pageFor(call, code), nullptr);
}

Http::Response takeJoin(Call& call)
{
    constexpr qsizetype kShortest = 10, kLongest = 1024, kName = 128;
    Access::requireOwnPage(call.request);
    const Field field = formOf(call);
    const QString code = field("code"), typed = field("account"), password = field("password");
    const QString name = cleanedName(typed);
    SignInPage page = pageFor(call, code);
    page.account = typed;
    if (!Store::findInvitation(call.store, Access::hashOf(code)))
        return gone(call);
    if (name.isEmpty() || name != typed || name.size() > kName)
        return with(400, page, "bad_name");
    if (password.size() < kShortest || password.size() > kLongest)
        return with(400, page, "short_password");
    const QString hash = Access::passwordHash(password);
    try {
        return changing(call, [&] {
            // Whoever removes the invitation has claimed it; the second one is too late.
            const auto invitation = Store::findInvitation(call.store, Access::hashOf(code));
            if (!invitation || !Store::removeInvitation(call.store, invitation->tenant, invitation->workspace,
                                                        invitation->id))
                return gone(call);
            return join(call, *invitation, name, hash);
        });
    } catch (const Store::StoreError& error) {
        if (error.kind != Store::StoreError::Kind::Conflict)
            throw;
        return with(409, page, "name_taken");
    }
}

} // namespace Itemhub::Routes
