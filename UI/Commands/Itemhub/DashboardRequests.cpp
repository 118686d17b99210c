#include "UI/Commands/Itemhub/DashboardRequests.h"

#include "Server/Base/Strings.h"
#include "Server/Base/Task.h"
#include "Server/DataModel/Document.h"
#include "Server/Itemhub/ItemhubOptionGroup.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Program/ProgramLink.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/ReplacingDocument.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Itemhub/ItemhubCommands.h"
#include "UI/Commands/Itemhub/ItemhubThreads.h"
#include "UI/Commands/Itemhub/ToldError.h"
#include "UI/Commands/Localized.h"

#include <QRegularExpression>
#include <QUrl>

#include <algorithm>
#include <exception>
#include <functional>
#include <utility>

namespace Vu::Commands {
namespace {

using Answer = Vs::Itemhub::DashboardAnswer;
using Request = DashboardCommands::Request;
using Vs::ItemhubUtilities;
using Vs::Strings::widen;

constexpr const wchar_t* kOwnService = L"own";

/// Whose page asked, which may no longer be the signed-in account when the request is answered.
struct Asker
{
    std::string service; ///< Empty for the program's own.
    std::wstring account;

    static Asker now()
    {
        const ItemhubUtilities* service = ItemhubUtilities::get();
        return {service->serviceAddress(), service->accountName()};
    }
    bool operator==(const Asker&) const = default;
};

std::wstring keyOf(const std::string& service)
{
    return service.empty() ? kOwnService : widen(service);
}

/// In terms that a person knows.
std::wstring nameOf(const std::string& service)
{
    if (service.empty())
        return localized("DashboardOwn", "The page of your own items");
    const QUrl address(QString::fromStdString(service));
    const std::wstring host = address.host().toStdWString();
    return address.port() < 0 ? host : host + L':' + std::to_wstring(address.port());
}

/// What the service calls what a request is about. Any thread.
std::wstring subjectOf(const Request& request)
{
    const ItemhubUtilities* service = ItemhubUtilities::get();
    if (const std::int64_t item = DashboardCommands::itemOf(request))
        return widen(service->getItemById(static_cast<int>(item)).caption());
    if (const std::string uri = DashboardCommands::attachmentOf(request); !uri.empty())
        return service->attachmentName(widen(uri));
    return {};
}

void answerLater(std::int64_t request, Answer answer, const std::wstring& detail = {})
{
    ItemhubThreads::run([=]() -> std::function<void()> {
        ItemhubUtilities::get()->answerDashboard(request, answer, detail);
        return nullptr;
    });
}

/// Informs both the page and the program's user.
void fail(std::int64_t request, const std::wstring& why)
{
    answerLater(request, Answer::Failed, why);
    ItemhubUtilities::get()->fireErrorMessage(why);
}

bool isShown(std::int64_t item)
{
    const DocumentSession* session = SessionMgr::get()->activeDocumentSession();
    const Vs::Document* document = session ? session->document() : nullptr;
    const auto shown = document ? ItemhubUtilities::get()->itemOf(document->path()) : std::nullopt;
    return shown && shown->itemId == item;
}

void run(const Request& request, CommandDefinition& definition)
{
    CommandContext context = CommandContext::activeContext();
    DashboardCommands::fill(request, context);
    if (DashboardCommands::isAboutShown(request) && !isShown(DashboardCommands::itemOf(request)))
        return fail(request.id,
                    localized("DashboardNotShown", "Quillet is showing another document than that item's."));
    if (!definition.isApplicable(&context))
        return fail(request.id, localizedFormat("DashboardNotNow", "\"%1%\" cannot be done at the moment.",
                                                definition.info()->name()));
    if (ReplacingDocument::isCommand(&definition) && !ReplacingDocument::agreed())
        return answerLater(request.id, Answer::Refused);
    const ToldError told;
    const Vs::Status status = CommandMgr::get()->executeCommand(&definition, context);
    if (status.isError()) {
        ItemhubUtilities::get()->fireErrorMessage(status.toString());
        answerLater(request.id, Answer::Failed, status.toString());
    } else {
        answerLater(request.id, told.message.empty() ? Answer::Done : Answer::Failed, told.message);
    }
}

/// Whether the person grants the page's request.
bool isAllowed(const Request& request, const std::wstring& subject)
{
    if (DashboardRequests::isTrusted())
        return true;
    if (!MessageBox::canAsk())
        return false;
    enum { kAllow, kAlways };
    MessageBox box(
        DashboardCommands::question(request, nameOf(ItemhubUtilities::get()->serviceAddress()), subject));
    box.icon(kQuestionIcon);
    box.addButton(localized("DashboardAllow", "Allow"));
    box.addButton(localized("DashboardAlways", "Always"));
    box.addButton(kNoButton, true);
    const int chosen = box.show();
    if (chosen == kAlways)
        DashboardRequests::trust(true);
    return chosen == kAllow || chosen == kAlways;
}

void handle(const Request& request, const Asker& asker, const std::wstring& subject)
{
    // Who signed in meanwhile never saw that page.
    if (asker != Asker::now())
        return;
    if (const std::wstring why = DashboardCommands::refusal(request, asker.service); !why.empty())
        return fail(request.id, why);
    CommandDefinition* const definition =
        CommandDefinitionMgr::get()->findCommandDefinitionById(widen(request.command));
    if (!definition)
        return;
    if (WorkspaceWindow* window = WorkspaceWindow::activeWorkspaceWindow())
        window->activateWindow();
    if (!isAllowed(request, subject))
        return answerLater(request.id, Answer::Refused);
    // The question may have taken long.
    if (asker == Asker::now())
        run(request, *definition);
}

/// In a handler, on a thread: has the exception reported on the main thread, which knows the user's language.
std::function<void()> telling(std::function<void(const std::wstring&)> tell)
{
    return [failure = std::current_exception(), tell = std::move(tell)] {
        try {
            std::rethrow_exception(failure);
        } catch (const std::exception&) {
            tell(ItemhubUtilities::currentFailure());
        }
    };
}

/// On a thread: takes a request, and gives what is then done about it on the main thread.
std::function<void()> taken(const Request& request, const Asker& asker)
{
    if (request.id == 0)
        return nullptr;
    std::wstring subject;
    // What is refused anyway isn't looked up.
    if (!DashboardCommands::isRefused(request, asker.service))
        try {
            subject = subjectOf(request);
        } catch (const std::exception&) {
            return telling([id = request.id](const std::wstring& why) { fail(id, why); });
        }
    // It waits behind an open dialog.
    return [=] { Application::get()->deferredTasks()->post([=] { handle(request, asker, subject); }); };
}

void refuseLink()
{
    ItemhubUtilities::get()->fireErrorMessage(
        localized("DashboardBadLink", "The link to Quillet does not come from an item service's page."));
}

} // namespace

DashboardRequests::DashboardRequests()
{
    m_subscriptions.add(Vs::ItemhubEventSource::get(), this);
    ProgramLink::follower(&DashboardRequests::follow);
}

DashboardRequests::~DashboardRequests()
{
    ProgramLink::follower({});
    m_subscriptions.clear();
}

bool DashboardRequests::isTrusted()
{
    const auto trusted = Vs::ItemhubOptionGroup::get()->dashboards();
    return std::ranges::count(trusted, keyOf(ItemhubUtilities::get()->serviceAddress())) > 0;
}

void DashboardRequests::trust(bool on)
{
    auto trusted = Vs::ItemhubOptionGroup::get()->dashboards();
    const std::wstring key = keyOf(ItemhubUtilities::get()->serviceAddress());
    std::erase(trusted, key);
    if (on)
        trusted.push_back(key);
    Vs::ItemhubOptionGroup::get()->dashboards(trusted);
}

void DashboardRequests::follow(const std::string& link)
{
    static const QRegularExpression form("\\Aquillet:ticket/([A-Za-z0-9_-]{43})\\z");
    constexpr size_t kLongest = 100;
    const auto match =
        link.size() > kLongest ? QRegularExpressionMatch() : form.match(QString::fromStdString(link));
    if (!match.hasMatch())
        return refuseLink();
    if (!itemhubSession())
        return ItemhubUtilities::get()->fireErrorMessage(localized(
            "DashboardSignIn", "Sign in to the item service first, then use its page's button again."));
    ItemhubThreads::run([ticket = match.captured(1).toStdString(),
                         asker = Asker::now()]() -> std::function<void()> {
        try {
            return taken(ItemhubUtilities::get()->redeemTicket(ticket), asker);
        } catch (const std::exception&) {
            return telling([](const std::wstring& why) { ItemhubUtilities::get()->fireErrorMessage(why); });
        }
    });
}

void DashboardRequests::dashboardAsked(Vs::ItemhubDashboardEvent* event)
{
    ItemhubThreads::run([id = event->request(), asker = Asker::now()]() -> std::function<void()> {
        // Where another program was faster, nobody needs to be told.
        return taken(ItemhubUtilities::get()->takeDashboardRequest(id), asker);
    });
}

} // namespace Vu::Commands
