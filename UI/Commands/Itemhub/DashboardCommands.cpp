#include "UI/Commands/Itemhub/DashboardCommands.h"

#include "Server/Base/Strings.h"
#include "Server/Base/UniqueString.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Commands/Localized.h"

#include <QUrl>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace Vu::Commands::DashboardCommands {
namespace {

using Vs::Strings::widen;

enum class Kind {
    Text,
    Number,    ///< A whole one from 0 up.
    Address,   ///< Of something of the same service.
    Service,   ///< That of the same service, unless it is the program's own, which nobody signs in to.
    WebAddress ///< Of anything in the web.
};

enum class Use {
    Needed,
    Optional,
    Zero, ///< 0 where it isn't given.
    Guard ///< Describes what the request is about, and is not passed to the command.
};

struct Argument
{
    std::string_view name{};
    Kind kind = Kind::Text;
    Use use = Use::Optional;
};

struct Row
{
    std::string_view command;
    std::array<Argument, 7> arguments;
};

constexpr std::string_view kItem = "ItemhubItemId", kAttachment = "fileUri";

// clang-format off
constexpr Row kRows[] = {
    {"ItemhubOpenAttachmentCommand",
     {{{kAttachment, Kind::Address, Use::Needed}}}},
    {"ItemhubInsertComponentCommand",
     {{{"ItemhubWorkspaceId", Kind::Number, Use::Needed},
       {kItem, Kind::Number, Use::Needed},
       {"ItemhubDocType", Kind::Text, Use::Needed}}}},
    {"ItemhubCreateCommentID",
     {{{"postID", Kind::Text, Use::Needed},
       {"postTitle"},
       {"postUrl", Kind::WebAddress}}}},
    {"ItemhubNewItemCommand",
     {{{"ItemhubWorkspaceId", Kind::Number, Use::Needed},
       {"ItemhubItemName"},
       {"ItemhubItemDescription"},
       {"ItemhubAssetType"},
       {"ItemhubLinkedItemId", Kind::Number, Use::Zero},
       {"ItemhubLinkedItemWorkspaceId", Kind::Number, Use::Zero}}}},
    {"ItemhubSaveCommand",
     {{{"ItemhubSaveLabel", Kind::Text, Use::Needed},
       {kItem, Kind::Number, Use::Guard}}}},
    {"ItemhubAuthenticateWithTokenCommand",
     {{{"ItemhubTenantUri", Kind::Service, Use::Needed},
       {"ItemhubTenant"},
       {"OAuthToken", Kind::Text, Use::Needed},
       {"OAuthTokenSecret"},
       {"OAuthSessionHandle"},
       {"ConsumerKey"},
       {"ConsumerSecret"}}}},
};
// clang-format on

const Row* rowOf(const Request& request)
{
    const Row* const found = std::ranges::find(kRows, request.command, &Row::command);
    return found == std::end(kRows) ? nullptr : found;
}

const Argument* argumentOf(const Row& row, const std::string& name)
{
    const auto* const found = std::ranges::find(row.arguments, name, &Argument::name);
    return found == row.arguments.end() || name.empty() ? nullptr : found;
}

/// What the request says for an argument; empty if nothing.
std::string given(const Request& request, std::string_view name)
{
    const auto found = request.arguments.find(std::string(name));
    return found == request.arguments.end() ? std::string() : found->second;
}

bool isNumber(const std::string& text)
{
    constexpr size_t kMostDigits = 9;
    return !text.empty() && text.size() <= kMostDigits &&
           std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

bool isOfWeb(const std::string& text)
{
    const QUrl url(QString::fromStdString(text), QUrl::StrictMode);
    return url.isValid() && !url.host().isEmpty() && (url.scheme() == "https" || url.scheme() == "http");
}

/// The program's own service has another port in each run, and the client looks at its addresses itself.
bool isOfService(const std::string& text, const std::string& service)
{
    return isOfWeb(text) && (service.empty() || (text + '/').starts_with(service));
}

bool fits(const Argument& argument, const std::string& text, const std::string& service)
{
    switch (argument.kind) {
    case Kind::Number:
        return isNumber(text);
    case Kind::Address:
        return isOfService(text, service);
    case Kind::Service:
        return !service.empty() && isOfService(text, service);
    case Kind::WebAddress:
        return text.empty() || isOfWeb(text);
    case Kind::Text:
        break;
    }
    return argument.use != Use::Needed || !text.empty();
}

/// The first argument that can't be taken; nothing if there is none.
std::optional<std::string> badArgument(const Row& row, const Request& request, const std::string& service)
{
    for (const auto& [name, text] : request.arguments) {
        const Argument* const argument = argumentOf(row, name);
        if (!argument || !fits(*argument, text, service))
            return name;
    }
    for (const Argument& argument : row.arguments)
        if ((argument.use == Use::Needed || argument.use == Use::Guard) &&
            given(request, argument.name).empty())
            return std::string(argument.name);
    return std::nullopt;
}

} // namespace

bool isRefused(const Request& request, const std::string& service)
{
    const Row* const row = rowOf(request);
    return !row || badArgument(*row, request, service);
}

std::wstring refusal(const Request& request, const std::string& service)
{
    const Row* const row = rowOf(request);
    if (!row)
        return localizedFormat("DashboardUnknown", "The service's page asks for \"%1%\", which no page may.",
                               widen(request.command));
    const auto bad = badArgument(*row, request, service);
    return bad ? localizedFormat("DashboardBadArgument",
                                 "The service's page asks for \"%1%\" with a \"%2%\" that cannot be taken.",
                                 widen(request.command), widen(*bad))
               : std::wstring();
}

void fill(const Request& request, CommandContext& context)
{
    for (const Argument& argument : rowOf(request)->arguments) {
        const std::string said = given(request, argument.name);
        const std::string text = said.empty() && argument.use == Use::Zero ? std::string("0") : said;
        if (!text.empty() && argument.use != Use::Guard)
            context.addArgument(Vs::UniqueString::find(std::string(argument.name).c_str(), true),
                                widen(text));
    }
}

std::int64_t itemOf(const Request& request)
{
    const std::string text = given(request, kItem);
    return isNumber(text) ? std::stoll(text) : 0;
}

std::string attachmentOf(const Request& request)
{
    return given(request, kAttachment);
}

bool isAboutShown(const Request& request)
{
    return request.command == "ItemhubSaveCommand";
}

std::wstring question(const Request& request, const std::wstring& who, const std::wstring& what)
{
    if (request.command == "ItemhubInsertComponentCommand")
        return localizedFormat("DashboardInsert", "%1% wants to insert \"%2%\" into the shown design.", who,
                               what);
    if (request.command == "ItemhubCreateCommentID")
        return localizedFormat("DashboardComment", "%1% wants to link \"%2%\" to the shown design.", who,
                               widen(given(request, "postTitle").empty() ? given(request, "postID")
                                                                         : given(request, "postTitle")));
    if (request.command == "ItemhubNewItemCommand")
        return localizedFormat("DashboardNew", "%1% wants to make the item \"%2%\" in Quillet.", who,
                               widen(given(request, "ItemhubItemName")));
    if (request.command == "ItemhubSaveCommand")
        return localizedFormat("DashboardMark",
                               "%1% wants to save \"%2%\" in Quillet as the version \"%3%\".", who, what,
                               widen(given(request, "ItemhubSaveLabel")));
    if (request.command == "ItemhubAuthenticateWithTokenCommand")
        return localizedFormat("DashboardToken", "%1% wants to sign Quillet in again.", who);
    return localizedFormat("DashboardOpen", "%1% wants to open \"%2%\" in Quillet.", who, what);
}

} // namespace Vu::Commands::DashboardCommands
