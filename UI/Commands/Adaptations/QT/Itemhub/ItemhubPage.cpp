#include "UI/Commands/Adaptations/QT/Itemhub/ItemhubPage.h"

#include "Server/Base/Strings.h"
#include "Server/Itemhub/ItemhubOptionGroup.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Program/PreferencesPage.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Commands/Itemhub/ItemhubNotifyMessageCmd.h"
#include "UI/Commands/Itemhub/ItemhubSessionCmds.h"
#include "UI/Commands/Localized.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

namespace Vu::Commands {
namespace {

using State = Vs::UploadQueuedFileInfo::State;
using Vs::ItemhubUtilities;

QString text(const char* key, const char* english)
{
    return QString::fromStdWString(localized(key, english));
}

QLabel* paragraph(QWidget* parent, const char* name)
{
    QLabel* label = PlainText::label(parent);
    label->setObjectName(QLatin1String(name));
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

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

/// A line for each save that isn't at the service.
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
    : QWidget(parent),
      m_on(new QCheckBox(
          QString::fromStdWString(localizedFormat("ItemhubPageOn", "Use the lifecycle service %1%",
                                                  ItemhubUtilities::getItemhub_TM())),
          this)),
      m_rest(new QWidget(this)),
      m_account(paragraph(m_rest, "itemhubAccount")),
      m_pending(paragraph(m_rest, "itemhubPending")),
      m_snapshots(new QCheckBox(
          text("ItemhubPageSnapshots", "Attach what was saved automatically to the items as well"), m_rest))
{
    setObjectName(QStringLiteral("itemhubPage"));
    m_on->setObjectName(QStringLiteral("itemhubOn"));
    m_snapshots->setObjectName(QStringLiteral("itemhubSnapshots"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_on);
    column->addWidget(m_rest);
    auto* rest = new QVBoxLayout(m_rest);
    rest->setContentsMargins(0, 0, 0, 0);
    rest->addWidget(m_account);
    m_sign = addButton(rest, "itemhubSign", {});
    QLabel* head = PlainText::label(m_rest, text("ItemhubPageToSend", "Not sent yet"));
    head->setForegroundRole(QPalette::PlaceholderText);
    head->setContentsMargins(0, 2 * kMargin, 0, 0);
    rest->addWidget(head);
    rest->addWidget(m_pending);
    m_send = addButton(rest, "itemhubSend", text("ItemhubPageSend", "Send Now"));
    rest->addSpacing(2 * kMargin);
    rest->addWidget(m_snapshots);
    connect(m_on, &QCheckBox::clicked, this,
            [](bool on) { Vs::ItemhubOptionGroup::get()->itemhubDisabled(!on); });
    connect(m_snapshots, &QCheckBox::clicked, this,
            [](bool on) { Vs::ItemhubOptionGroup::get()->recoverySnapshots(on); });
    // By their commands, so that titles follow.
    connect(m_sign, &QPushButton::clicked, this, [] {
        click(isSignedInToItemhub() ? ItemhubSignOutCmdDef::info()->key()
                                    : ItemhubSignInCmdDef::info()->key());
    });
    connect(m_send, &QPushButton::clicked, this, [] {
        ItemhubUtilities::get()->uploadNow();
        // What failed asks whether to try again.
        click(ItemhubNotifyMessageCmdDef::info()->key());
    });
    Vs::ItemhubEventSource::get()->subscribe(this);
    Vs::ItemhubOptionGroup::get()->subscribe(this);
    refresh();
}

ItemhubPage::~ItemhubPage()
{
    Vs::ItemhubEventSource::get()->unsubscribe(this);
    Vs::ItemhubOptionGroup::get()->unsubscribe(this);
}

QPushButton* ItemhubPage::addButton(QVBoxLayout* column, const char* name, const QString& title)
{
    auto* button = new QPushButton(title, m_rest);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    column->addWidget(button, 0, Qt::AlignLeft);
    return button;
}

void ItemhubPage::refresh()
{
    const auto* options = Vs::ItemhubOptionGroup::get();
    const ItemhubUtilities* service = ItemhubUtilities::get();
    m_on->setChecked(!options->itemhubDisabled());
    // Where the edition has no service, there is nothing to switch on.
    m_on->setEnabled(options->itemhubDisabled() || !service->ItemhubDisabled());
    m_rest->setVisible(!service->ItemhubDisabled());
    if (service->ItemhubDisabled())
        return;
    m_account->setText(QString::fromStdWString(accountText()));
    m_sign->setText(service->isAuthenticated() ? text("ItemhubPageSignOut", "Sign Out")
                                               : text("ItemhubPageSignIn", "Sign In..."));
    const std::vector<Vs::UploadQueuedFileInfo> pending = service->pendingUploads();
    m_pending->setText(QString::fromStdWString(pendingText(pending)));
    m_send->setVisible(!pending.empty());
    m_snapshots->setChecked(options->recoverySnapshots());
}

namespace {

const PreferencesPage kPage([] { return localized("ItemhubPageTitle", "Service"); },
                            [](QWidget* parent) -> QWidget* { return new ItemhubPage(parent); });

} // namespace
} // namespace Vu::Commands
