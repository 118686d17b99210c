#include "Services/Itemhub/Routes/Route.h"

#include "Services/Itemhub/Routes/AttachmentRoutes.h"
#include "Services/Itemhub/Routes/DashboardRoutes.h"
#include "Services/Itemhub/Routes/EventRoutes.h"
#include "Services/Itemhub/Routes/FindRoutes.h"
#include "Services/Itemhub/Routes/ItemRoutes.h"
#include "Services/Itemhub/Routes/JoinRoutes.h"
#include "Services/Itemhub/Routes/PeopleRoutes.h"
#include "Services/Itemhub/Routes/PictureRoutes.h"
#include "Services/Itemhub/Routes/ProgramRoutes.h"
#include "Services/Itemhub/Routes/ProviderRoutes.h"
#include "Services/Itemhub/Routes/ServiceRoutes.h"
#include "Services/Itemhub/Routes/SignInRoutes.h"
#include "Services/Itemhub/Routes/TeamRoutes.h"
#include "Services/Itemhub/Routes/TokenRoutes.h"
#include "Services/Itemhub/Routes/UploadRoutes.h"
#include "Services/Itemhub/Routes/WorkspaceRoutes.h"

namespace Itemhub::Routes {

namespace {

std::vector<std::string_view> partsOf(std::string_view path)
{
    std::vector<std::string_view> parts;
    for (size_t begin = 1; begin <= path.size();) {
        const size_t end = std::min(path.find('/', begin), path.size());
        parts.push_back(path.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

/// Each part of a pattern is literal text, or a name in braces followed by text.
bool fits(std::string_view pattern, std::string_view part, std::map<std::string, std::string>& names)
{
    if (!pattern.starts_with('{'))
        return pattern == part;
    const size_t close = pattern.find('}');
    const std::string_view ending = pattern.substr(close + 1);
    if (part.size() <= ending.size() || !part.ends_with(ending))
        return false;
    names[std::string(pattern.substr(1, close - 1))] = part.substr(0, part.size() - ending.size());
    return true;
}

bool fits(const std::vector<std::string_view>& pattern, const std::vector<std::string_view>& path,
          std::map<std::string, std::string>& names)
{
    if (pattern.size() != path.size())
        return false;
    for (size_t i = 0; i < path.size(); ++i)
        if (!fits(pattern[i], path[i], names))
            return false;
    return true;
}

} // namespace

const std::vector<Route>& routes()
{
    using enum Asks;
    using enum Store::Role;
    constexpr Takes kNone = Takes::Nothing;
    // More specific patterns come first.
    static const std::vector<Route> table{
        {"GET", "/", Nothing, None, kNone, describeService},
        {"GET", "/health", Nothing, None, kNone, tellHealth},
        {"GET", "/openapi.yaml", Nothing, None, kNone, describeInterface},

        {"GET", "/dashboard", Nothing, None, kNone, showDashboard},
        {"POST", "/dashboard", Nothing, None, Takes::Bytes, signInToDashboard},
        {"GET", "/dashboard/enter", Nothing, None, kNone, enterDashboard},
        {"GET", "/dashboard/files/{file}", Nothing, None, kNone, showDashboardFile},
        {"GET", "/dashboard/join", Nothing, None, kNone, showJoin},
        {"POST", "/dashboard/join", Nothing, None, Takes::Bytes, takeJoin},
        {"GET", "/dashboard/provider", Nothing, None, kNone, goToProvider},
        {"POST", "/dashboard/provider", SignedIn, Reader, kNone, linkProvider},
        {"DELETE", "/dashboard/provider", SignedIn, Reader, kNone, unlinkProvider},
        {"GET", "/dashboard/back", Nothing, None, kNone, backFromProvider},
        {"POST", "/dashboard/links", SignedIn, Reader, kNone, makeDashboardLink},
        {"POST", "/dashboard/end", SignedIn, Reader, kNone, signOutOfDashboard},

        {"POST", "/tokens", Nothing, None, Takes::Secrets, signIn},
        {"POST", "/oauth/access_token", Nothing, None, kNone, renewToken},
        {"GET", "/.well-known/oauth-authorization-server", Nothing, None, kNone, describeSignIn},
        {"GET", "/oauth/authorize", Nothing, None, kNone, showSignIn},
        {"POST", "/oauth/authorize", Nothing, None, Takes::Bytes, takeSignIn},
        {"GET", "/oauth/provider", Nothing, None, kNone, goToProviderForProgram},
        {"POST", "/oauth/token", Nothing, None, Takes::Bytes, changeCode},
        {"GET", "/session", SignedIn, Reader, kNone, tellSession},
        {"GET", "/tokens", SignedIn, Reader, kNone, listTokens},
        {"DELETE", "/tokens/{token}", SignedIn, Reader, kNone, deleteToken},

        {"GET", "/workspaces", SignedIn, Reader, kNone, listWorkspaces},
        {"POST", "/workspaces", Tenant, Admin, Takes::Json, makeWorkspace},
        {"GET", "/workspaces/{workspace}", Path, Reader, kNone, readWorkspace},
        {"GET", "/workspaces/{workspace}/members", Path, Admin, kNone, listMembers},
        {"PUT", "/workspaces/{workspace}/members/{account}", Path, Admin, Takes::Json, setMember},
        {"DELETE", "/workspaces/{workspace}/members/{account}", Path, Admin, kNone, removeMember},

        {"GET", "/workspaces/{workspace}/invitations", Path, Admin, kNone, listInvitations},
        {"POST", "/workspaces/{workspace}/invitations", Path, Admin, Takes::Secrets, makeInvitation},
        {"DELETE", "/workspaces/{workspace}/invitations/{invitation}", Path, Admin, kNone, deleteInvitation},
        {"GET", "/accounts", Tenant, Admin, kNone, listAccounts},
        {"PATCH", "/accounts/{account}", Tenant, Admin, Takes::Json, changeAccount},
        {"GET", "/audit", Tenant, Admin, kNone, listAudit},

        {"GET", "/teams", Tenant, Admin, kNone, listTeams},
        {"POST", "/teams", Tenant, Admin, Takes::Json, makeTeam},
        {"PATCH", "/teams/{team}", Tenant, Admin, Takes::Json, changeTeam},
        {"DELETE", "/teams/{team}", Tenant, Admin, kNone, deleteTeam},
        {"PUT", "/teams/{team}/members/{account}", Tenant, Admin, kNone, addToTeam},
        {"DELETE", "/teams/{team}/members/{account}", Tenant, Admin, kNone, takeFromTeam},
        {"GET", "/workspaces/{workspace}/teams", Path, Admin, kNone, listTeamsOfWorkspace},
        {"PUT", "/workspaces/{workspace}/teams/{team}", Path, Admin, Takes::Json, setTeam},
        {"DELETE", "/workspaces/{workspace}/teams/{team}", Path, Admin, kNone, removeTeam},

        {"GET", "/workspaces/{workspace}/items", Path, Reader, kNone, listItems},
        {"POST", "/workspaces/{workspace}/items", Path, Writer, Takes::Json, makeItem},
        {"GET", "/items/{item}", Path, Reader, kNone, readItem},
        {"PATCH", "/items/{item}", Path, Writer, Takes::Json, changeItem},
        {"DELETE", "/items/{item}", Path, Admin, kNone, deleteItem},
        {"GET", "/items/{item}/picture", Path, Reader, kNone, showItem},
        {"GET", "/items/{item}/links", Path, Reader, kNone, listLinks},
        {"POST", "/items/{item}/links", Path, Writer, Takes::Json, makeLink},
        {"DELETE", "/items/{item}/links/{linked}", Path, Writer, kNone, deleteLink},
        {"GET", "/items/{item}/comments", Path, Reader, kNone, listComments},
        {"POST", "/items/{item}/comments", Path, Writer, Takes::Json, makeComment},
        {"DELETE", "/comments/{comment}", Path, Writer, kNone, deleteComment},

        {"GET", "/items/{item}/attachments", Path, Reader, kNone, listAttachments},
        {"POST", "/items/{item}/attachments", Path, Writer, Takes::Json, makeAttachment},
        {"GET", "/attachments/{attachment}.xml", Path, Reader, kNone, describeAttachment},
        {"GET", "/attachments/{attachment}", Path, Reader, kNone, readAttachment},
        {"DELETE", "/attachments/{attachment}", Path, Admin, kNone, deleteAttachment},
        {"GET", "/attachments/{attachment}/versions", Path, Reader, kNone, listVersions},
        {"POST", "/attachments/{attachment}/versions", Path, Writer, Takes::Json, makeVersion},
        {"GET", "/attachments/{attachment}/versions/{version}", Path, Reader, kNone, readVersion},
        {"GET", "/attachments/{attachment}/versions/{version}/content", Path, Reader, kNone, readContent},
        {"GET", "/attachments/{attachment}/versions/{version}/picture", Path, Reader, kNone, showVersion},

        {"POST", "/uploads", Anywhere, Writer, Takes::Bytes, beginUpload},
        {"HEAD", "/uploads/{upload}", Anywhere, Writer, kNone, tellUpload},
        {"PATCH", "/uploads/{upload}", Anywhere, Writer, Takes::Bytes, continueUpload},
        {"DELETE", "/uploads/{upload}", Anywhere, Writer, kNone, endUpload},

        {"GET", "/favourites", SignedIn, Reader, kNone, listFavourites},
        {"PUT", "/favourites/{item}", Path, Reader, kNone, addFavourite},
        {"DELETE", "/favourites/{item}", Path, Reader, kNone, removeFavourite},
        {"POST", "/program/requests", SignedIn, Reader, Takes::Secrets, askProgram},
        {"GET", "/program/requests/{request}", SignedIn, Reader, kNone, tellRequest},
        {"PUT", "/program/requests/{request}", SignedIn, Reader, Takes::Json, answerRequest},
        {"POST", "/program/requests/{request}/take", SignedIn, Reader, Takes::Json, takeRequest},
        {"POST", "/program/tickets", SignedIn, Reader, Takes::Secrets, redeemTicket},

        {"GET", "/search", SignedIn, Reader, kNone, searchItems},
        {"GET", "/events", SignedIn, Reader, kNone, listen},
    };
    return table;
}

const Route* findRoute(std::string_view method, const std::string& path,
                       std::map<std::string, std::string>& names, std::vector<std::string>& others)
{
    static const std::vector<std::vector<std::string_view>> patterns = [] {
        std::vector<std::vector<std::string_view>> split;
        for (const Route& route : routes())
            split.push_back(partsOf(route.pattern));
        return split;
    }();
    const std::vector<std::string_view> parts = partsOf(path);
    const Route* asGet = nullptr;
    std::map<std::string, std::string> found;
    for (size_t i = 0; i < patterns.size(); ++i) {
        found.clear();
        if (!fits(patterns[i], parts, found))
            continue;
        const Route& route = routes()[i];
        if (method == route.method) {
            names = std::move(found);
            return &route;
        }
        if (method == "HEAD" && std::string_view(route.method) == "GET" && !asGet) {
            asGet = &route;
            names = std::move(found);
        }
        others.emplace_back(route.method);
    }
    return asGet;
}

} // namespace Itemhub::Routes
