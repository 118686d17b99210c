#include "UI/Commands/Adaptations/QT/Itemhub/ItemhubPage.h"

#include "Server/Base/Strings.h"
#include "Server/Itemhub/ItemhubOptionGroup.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Program/PreferencesPage.h"
#include "UI/Commands/Adaptations/QT/Told.h"
#include "UI/Commands/Itemhub/DashboardRequests.h"
#include "UI/Commands/Itemhub/ItemhubNotifyMessageCmd.h"
#include "UI/Commands/Itemhub/ItemhubSessionCmds.h"
#include "UI/Commands/Localized.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

namespace Vu::Commands {
namespace {

using State = Vs::UploadQueuedFileInfo::State;
using Vs::ItemhubUtilities;

std::wstring accountText()
{
    const ItemhubUtilities* service = ItemhubUtilities::get();
    if (!service->isAuthenticated())
        return localized("ItemhubPageNobody", "Nobody is signed in.");
    std::wstring shown =
        service->isOwnService()
            ? localized("ItemhubPageOwn", "The items are kept on this computer.")
            : localizedFormat("ItemhubPageAccount", "Signed in as %1% at %2%.", service->accountName(),
                              Vs::Strings::widen(service->serviceAddress()));
    if (!service->isOnline())
        shown += L' ' + localized("ItemhubPageAway", "The service cannot be reached at the moment.");
    if (!service->isKept())
        shown += L' ' + localized("ItemhubPageNotKept", "Only until the program ends.");
    return shown;
}

/// A line for each save that the service doesn't have yet.
std::wstring pendingText(const std::vector<Vs::UploadQueuedFileInfo>& files)
{
    std::wstring lines;
    for (const Vs::UploadQueuedFileInfo& file : files)
        lines += (lines.empty() ? L"" : L"\n") + file.fileName() +
                 (file.reason().empty() ? L"" : L": " + file.reason());
    return lines.empty() ? localized("ItemhubPageAllSent", "Nothing. All that was saved has arrived.")
                         : lines;
}

void click(const std::wstring& command)
{
    if (CommandDefinition* found = CommandDefinitionMgr::get()->findCommandDefinitionById(command))
        found->onClicked();
}

} // namespace

ItemhubPage::ItemhubPage(QWidget* parent)
    : ServicePage("itemhub",
                  QString::fromStdWString(localizedFormat("ItemhubPageOn", "Use the lifecycle service %1%",
                                                          ItemhubUtilities::getItemhub_TM())),
                  parent),
      m_account(addText("Account")),
      m_sign(addButton("Sign", {}))
{
    addHead(told("ItemhubPageToSend", "Not sent yet"));
    m_pending = addText("Pending");
    m_send = addButton("Send", told("ItemhubPageSend", "Send Now"));
    m_snapshots = addChoice("Snapshots", told("ItemhubPageSnapshots",
                                              "Attach what was saved automatically to the items as well"));
    m_trusted =
        addChoice("Trusted", told("ItemhubPageTrusted",
                                  "Do what the service's page in the browser asks for without a question"));
    connect(m_trusted, &QCheckBox::clicked, this, &DashboardRequests::trust);
    connect(onOff(), &QCheckBox::clicked, this,
            [](bool on) { Vs::ItemhubOptionGroup::get()->itemhubDisabled(!on); });
    connect(m_snapshots, &QCheckBox::clicked, this,
            [](bool on) { Vs::ItemhubOptionGroup::get()->recoverySnapshots(on); });
    // Through their commands, so that titles follow.
    connect(m_sign, &QPushButton::clicked, this, [] {
        click(isSignedInToItemhub() ? ItemhubSignOutCmdDef::info()->key()
                                    : ItemhubSignInCmdDef::info()->key());
    });
    connect(m_send, &QPushButton::clicked, this, [] {
        ItemhubUtilities::get()->uploadNow();
        // A failed one asks whether to try again.
        click(ItemhubNotifyMessageCmdDef::info()->key());
    });
    m_subscriptions.add(Vs::ItemhubEventSource::get(), this);
    m_subscriptions.add(Vs::ItemhubOptionGroup::get(), this);
    refresh();
}

void ItemhubPage::refresh()
{
    const auto* options = Vs::ItemhubOptionGroup::get();
    const ItemhubUtilities* service = ItemhubUtilities::get();
    if (!showRest(options->itemhubDisabled(), service->ItemhubDisabled()))
        return;
    m_account->setText(QString::fromStdWString(accountText()));
    m_sign->setText(service->isAuthenticated() ? told("ItemhubPageSignOut", "Sign Out")
                                               : told("ItemhubPageSignIn", "Sign In..."));
    const std::vector<Vs::UploadQueuedFileInfo> pending = service->pendingUploads();
    m_pending->setText(QString::fromStdWString(pendingText(pending)));
    keepKeyboard(m_send, !pending.empty(), m_sign);
    m_send->setVisible(!pending.empty());
    m_snapshots->setChecked(options->recoverySnapshots());
    m_trusted->setVisible(service->isAuthenticated());
    m_trusted->setChecked(DashboardRequests::isTrusted());
}

namespace {

const PreferencesPage kPage([] { return localized("ItemhubPageTitle", "Service"); },
                            [](QWidget* parent) -> QWidget* { return new ItemhubPage(parent); });

} // namespace
} // namespace Vu::Commands
