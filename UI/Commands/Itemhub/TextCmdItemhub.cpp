// The subject area "Itemhub": what a script or a person wants of the lifecycle service beside its commands.

#include "Server/Base/NumberText.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptSecrets.h"
#include "Server/Itemhub/ItemhubOptionGroup.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Commands/Itemhub/ItemhubLines.h"
#include "UI/Commands/Localized.h"

#include <functional>

namespace Vu::Commands {
namespace {

using Parameters = Vs::TextCommandParameters;
using Result = Vs::TextCommandResult;
using Vs::ItemhubUtilities;

constexpr const wchar_t* kArea = L"Itemhub";

constexpr AreaRow kItemhubAreaRow = {kArea, L"Items of the lifecycle service, with their versions"};

const SubjectArea<kItemhubAreaRow> kItemhubArea;

/// Goes on with the last session. For who has never had one, the program's own service is there.
void beginSession()
{
    ItemhubUtilities* service = ItemhubUtilities::get();
    const auto* options = Vs::ItemhubOptionGroup::get();
    const bool isNew = options->service().empty() && options->account().empty();
    if (!service->isAuthenticated() && !service->resume() && isNew)
        static_cast<void>(service->signInToOwnService());
}

enum class Session { Needed, AsItIs };

/// What a line asks the service for. Any refusal by the service is the line's error.
Result asked(const std::function<Result()>& ask, Session session = Session::Needed)
{
    if (ItemhubUtilities::get()->ItemhubDisabled())
        return {1, localized("ItemhubOff", "The lifecycle service is switched off.")};
    try {
        if (session == Session::Needed)
            beginSession();
        return ask();
    } catch (const std::exception&) {
        return {1, ItemhubUtilities::currentFailure()};
    }
}

Result missing(const wchar_t* what)
{
    return {1, std::wstring(L"No ") + what + L" specified as parameter"};
}

/// Throws Vs::Exception if the text is not a valid number.
int idOf(const std::wstring& text)
{
    const auto id = Vs::readNumber<int>(text);
    if (!id || *id < 1)
        throw Vs::Exception(L"\"" + text + L"\" is not the number of anything");
    return *id;
}

// clang-format off
constexpr DirectTextRow kSignIn      = {kArea, L"SignIn", L"[<address> <token> [<customer>]] Signs in by a token; without one, to the service that the last run was signed in to, or else to the program's own.", "%s%s%s"};
constexpr DirectTextRow kSignOut     = {kArea, L"SignOut", L"Signs out. What waits to be uploaded stays."};
constexpr DirectTextRow kAccount     = {kArea, L"Account", L"Says who is signed in, and where."};
constexpr DirectTextRow kWorkspaces  = {kArea, L"Workspaces", L"Lists the workspaces: number, name, role."};
constexpr DirectTextRow kItems       = {kArea, L"Items", L"<workspace> Lists the items of a workspace: number, caption, who made it.", "%d"};
constexpr DirectTextRow kAttachments = {kArea, L"Attachments", L"<item> Lists the attachments of an item: number, name, kind of document, newest version, address.", "%d"};
constexpr DirectTextRow kVersions    = {kArea, L"Versions", L"<item> Lists the versions of an item's attachments, the newest first: attachment, number, label, who made it and when.", "%d"};
constexpr DirectTextRow kSearch      = {kArea, L"Search", L"<text> Lists the items that contain words beginning like this: number, caption.", "%s"};
constexpr DirectTextRow kFavourites  = {kArea, L"Favourites", L"Lists the bookmarked items: number, caption."};
constexpr DirectTextRow kFavourite   = {kArea, L"Favourite", L"<item> [/Off] Bookmarks an item; with /Off no more.", "%d"};
constexpr DirectTextRow kOpen        = {kArea, L"Open", L"<item> Opens the design of an item.", "%d"};
constexpr DirectTextRow kInsert      = {kArea, L"Insert", L"<item> Inserts the design of an item into the active one.", "%d"};
constexpr DirectTextRow kComment     = {kArea, L"Comment", L"<item> <text> Comments on an item.", "%d%s"};
constexpr DirectTextRow kComments    = {kArea, L"Comments", L"<item> Lists the comments on an item: who wrote it, when, text.", "%d"};
constexpr DirectTextRow kPending     = {kArea, L"Pending", L"Lists the saves that have not reached the service yet: file, label, state, reason."};
constexpr DirectTextRow kWait        = {kArea, L"Wait", L"[<seconds>] Waits until all saves have arrived, at most a minute or so long; fails if some have not.", "%f"};
// clang-format on

class TextCmdItemhubSignIn : public DirectTextCommand<kSignIn>
{
public:
    Result execute(const Parameters& parameters) override
    {
        if (parameters.parameters() == 1)
            return missing(L"token");
        if (parameters.parameters() > 1)
            Vs::TranscriptSecrets::keep(L"ITEMHUB_TOKEN", parameters[1]);
        return asked(
            [&]() -> Result {
                ItemhubUtilities* service = ItemhubUtilities::get();
                if (parameters.parameters() > 1) {
                    Vs::Itemhub::Access access;
                    access.address = Vs::Strings::narrow(parameters[0]);
                    access.token = Vs::Strings::narrow(parameters[1]);
                    if (parameters.parameters() > 2)
                        access.customer = Vs::Strings::narrow(parameters[2]);
                    static_cast<void>(service->signIn(access, false));
                } else if (!service->isAuthenticated() && !service->resume()) {
                    static_cast<void>(service->signInToOwnService());
                }
                return service->isAuthenticated() ? Result{0, ItemhubLines::account()}
                                                  : Result{1, ItemhubLines::nobody()};
            },
            Session::AsItIs);
    }
};

class TextCmdItemhubSignOut : public DirectTextCommand<kSignOut>
{
public:
    Result execute(const Parameters&) override
    {
        return asked(
            []() -> Result {
                ItemhubUtilities::get()->signOut();
                return {0, {}};
            },
            Session::AsItIs);
    }
};

class TextCmdItemhubAccount : public DirectTextCommand<kAccount>
{
public:
    Result execute(const Parameters&) override
    {
        return {0, ItemhubUtilities::get()->isAuthenticated() ? ItemhubLines::account()
                                                              : ItemhubLines::nobody()};
    }
};

/// A line whose answer is a list, of something by its number or of all.
template <const DirectTextRow& kRow, std::wstring (*kList)(int id)>
class ListOf : public DirectTextCommand<kRow>
{
public:
    Result execute(const Parameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return missing(L"number");
        return asked([&]() -> Result { return {0, kList(idOf(parameters[0]))}; });
    }
};

template <const DirectTextRow& kRow, std::wstring (*kList)(), Session kSession = Session::Needed>
class ListOfAll : public DirectTextCommand<kRow>
{
public:
    Result execute(const Parameters&) override
    {
        return asked([]() -> Result { return {0, kList()}; }, kSession);
    }
};

class TextCmdItemhubSearch : public DirectTextCommand<kSearch>
{
public:
    Result execute(const Parameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return missing(L"text");
        return asked([&]() -> Result { return {0, ItemhubLines::found(parameters[0])}; });
    }
};

class TextCmdItemhubFavourite : public DirectTextCommand<kFavourite>
{
public:
    Result execute(const Parameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return missing(L"item");
        return asked([&]() -> Result {
            ItemhubUtilities::get()->setFavorite(idOf(parameters[0]), !parameters.hasFlag(L"Off"));
            return {0, {}};
        });
    }
};

class TextCmdItemhubOpen : public DirectTextCommand<kOpen>
{
public:
    Result execute(const Parameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return missing(L"item");
        return asked([&]() -> Result { return ItemhubLines::open(idOf(parameters[0]), parameters); });
    }
};

class TextCmdItemhubInsert : public DirectTextCommand<kInsert>
{
public:
    Result execute(const Parameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return missing(L"item");
        return asked([&]() -> Result { return ItemhubLines::insert(idOf(parameters[0]), parameters); });
    }
};

class TextCmdItemhubComment : public DirectTextCommand<kComment>
{
public:
    Result execute(const Parameters& parameters) override
    {
        if (parameters.parameters() < 2)
            return missing(parameters.parameters() == 0 ? L"item" : L"text");
        return asked([&]() -> Result {
            ItemhubUtilities* service = ItemhubUtilities::get();
            static_cast<void>(service->addComment(service->getItemById(idOf(parameters[0])), parameters[1]));
            return {0, {}};
        });
    }
};

class TextCmdItemhubWait : public DirectTextCommand<kWait>
{
public:
    Result execute(const Parameters& parameters) override
    {
        constexpr double kUsual = 60, kMost = 86400;
        const double seconds = parameters.parameters() > 0 ? parameters.real(0) : kUsual;
        if (seconds < 0 || seconds > kMost)
            return {1, L"\"" + parameters[0] + L"\" is not a time in seconds, up to a day"};
        return asked(
            [&]() -> Result {
                const auto time = std::chrono::milliseconds(static_cast<long long>(seconds * 1000));
                if (ItemhubUtilities::get()->waitForUploads(time))
                    return {0, {}};
                return {1, localizedFormat("ItemhubNotArrived", "Not all saves have arrived:\n%1%",
                                           ItemhubLines::pending())};
            },
            Session::AsItIs);
    }
};

TextCmdItemhubSignIn theSignIn;
TextCmdItemhubSignOut theSignOut;
TextCmdItemhubAccount theAccount;
ListOfAll<kWorkspaces, ItemhubLines::workspaces> theWorkspaces;
ListOf<kItems, ItemhubLines::items> theItems;
ListOf<kAttachments, ItemhubLines::attachments> theAttachments;
ListOf<kVersions, ItemhubLines::versions> theVersions;
TextCmdItemhubSearch theSearch;
ListOfAll<kFavourites, ItemhubLines::favourites> theFavourites;
TextCmdItemhubFavourite theFavourite;
TextCmdItemhubOpen theOpen;
TextCmdItemhubInsert theInsert;
TextCmdItemhubComment theComment;
ListOf<kComments, ItemhubLines::comments> theComments;
ListOfAll<kPending, ItemhubLines::pending, Session::AsItIs> thePending;
TextCmdItemhubWait theWait;

} // namespace
} // namespace Vu::Commands
