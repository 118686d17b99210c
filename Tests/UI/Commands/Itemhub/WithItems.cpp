#include "Tests/UI/Commands/Itemhub/WithItems.h"

#include "Server/Base/Strings.h"
#include "Server/Base/Task.h"
#include "Server/DataModel/Document.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/LabelDescriptionDialog.h"
#include "UI/Base/Program/Notifications.h"

#include <chrono>
#include <thread>

namespace CommandsTests {

void WithItems::SetUp()
{
    Recorded::SetUp();
    static int accounts = 0;
    m_account = "ada" + std::to_string(++accounts);
    m_token = service().token(m_account, "writer");
    Vs::ItemhubEventSource::get()->subscribe(this);
    answer(signInLine());
    ASSERT_TRUE(hub().isAuthenticated()) << (m_told.empty() ? "" : Vs::Strings::narrow(m_told.back()));
}

void WithItems::TearDown()
{
    service().proxy().onRequest({});
    Vu::LabelDescriptionDialog::responder(nullptr);
    Recorded::TearDown();
    hub().signOut();
    Vs::ItemhubUtilities::results().flush();
    Vs::ItemhubEventSource::get()->unsubscribe(this);
    for (Vs::Notification* notification : Vs::NotificationCenter::get()->notifications())
        Vs::NotificationCenter::get()->remove(notification);
}

TestSupport::ItemService& WithItems::service()
{
    static TestSupport::ItemService service;
    return service;
}

std::wstring WithItems::signInLine() const
{
    return L"Dashboard.AuthenticateWithTokenCmd " + Vs::Strings::widen(service().address()) + L' ' +
           Vs::Strings::widen(m_token) + L" acme";
}

bool WithItems::until(const std::function<bool()>& holds)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!holds()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        Vu::Application::get()->processEvents();
        Vu::Application::get()->flushDeferredTasks();
    }
    return true;
}

int WithItems::newItem(const std::wstring& caption)
{
    answer(L"Dashboard.NewItemCmd 1 " + Vs::Strings::quote(caption) + L" 0 0 VeloraAssetType");
    answer(L"Design.Box 10 20 30");
    answer(L"Document.Save");
    EXPECT_TRUE(arrives());
    return itemOfShown();
}

int WithItems::itemOfShown()
{
    const Vs::Document* document = activeDocument();
    const auto item = document ? hub().itemOf(document->path()) : std::nullopt;
    EXPECT_TRUE(item) << "the shown document is no item's";
    return item ? static_cast<int>(item->itemId) : 0;
}

std::vector<std::string> WithItems::labels(int item)
{
    std::vector<std::string> labels;
    const auto workspace = hub().getWorkspaceById(1);
    for (const auto& attachment : hub().getItemAttachments(workspace, hub().getItemById(item)))
        for (const auto& version : hub().getVersions(attachment))
            labels.insert(labels.begin(), version.label);
    return labels;
}

std::wstring WithItems::addressOf(int item)
{
    const auto attachments = hub().getItemAttachments(hub().getWorkspaceById(1), hub().getItemById(item));
    return attachments.empty() ? std::wstring() : Vs::Strings::widen(attachments.front().uri());
}

} // namespace CommandsTests
