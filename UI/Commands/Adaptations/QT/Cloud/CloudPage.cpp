#include "UI/Commands/Adaptations/QT/Cloud/CloudPage.h"

#include "Server/Base/Status.h"
#include "Server/Skyvault/CloudCacheManager.h"
#include "Server/Skyvault/CloudOptionGroup.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultUtilities.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Program/PreferencesPage.h"
#include "UI/Commands/Adaptations/QT/Cloud/CloudCacheFiles.h"
#include "UI/Commands/Adaptations/QT/Cloud/CloudTexts.h"
#include "UI/Commands/Localized.h"

#include <QCheckBox>
#include <QLabel>
#include <QLocale>
#include <QPushButton>

namespace Vu::Commands {
namespace {

using CloudTexts::named;
using CloudTexts::text;

QString sizeText(std::uint64_t bytes)
{
    return QLocale().formattedDataSize(static_cast<qint64>(bytes), 1);
}

QString accountText()
{
    const Vs::MeshportAuth* auth = Vs::MeshportAuth::globalInstance();
    const QString account = CloudTexts::account();
    return !auth->isLoggedIn() || auth->isKept()
               ? account
               : account + u' ' + text("CloudNotKept", "Only until the program ends.");
}

} // namespace

CloudPage::CloudPage(QWidget* parent)
    : ServicePage("cloud", named(text("CloudUse", "Use the cloud drive %1")), parent),
      m_account(addText("Account")),
      m_sign(addButton("Sign", {})),
      m_traitsHead(addHead(text("CloudServerDoes", "What the server does"))),
      m_traits(addText("Traits"))
{
    addHead(text("CloudToSend", "Waiting to be sent"));
    m_waiting = addText("Waiting");
    m_send = addButton("Send", text("CloudSendNow", "Send Now"));
    addHead(text("CloudCopies", "Copies on this computer"));
    m_cache = addText("Cache");
    m_clear = addButton("Clear", text("CloudClear", "Clear What the Drive Also Has"));
    connect(onOff(), &QCheckBox::clicked, this,
            [](bool on) { Vs::CloudOptionGroup::get()->cloudDisabled(!on); });
    connect(m_sign, &QPushButton::clicked, this, &CloudPage::signInOrOut);
    connect(m_send, &QPushButton::clicked, this, &CloudPage::sendWaiting);
    connect(m_clear, &QPushButton::clicked, this, &CloudPage::clearCache);
    m_subscriptions.add(Vs::CloudEventSource::get(), this);
    m_subscriptions.add(Vs::CloudOptionGroup::get(), this);
    refresh();
}

void CloudPage::refresh()
{
    const Vs::MeshportAuth* auth = Vs::MeshportAuth::globalInstance();
    if (!showRest(Vs::CloudOptionGroup::get()->cloudDisabled(), auth->cloudDisabled()))
        return;
    m_account->setText(accountText());
    m_sign->setText(auth->isLoggedIn() ? text("CloudPageSignOut", "Sign Out")
                                       : text("CloudPageSignIn", "Sign In..."));
    const Vs::Cloud::DriveTraits* traits = auth->traits();
    m_traitsHead->setVisible(traits);
    m_traits->setVisible(traits);
    if (traits) {
        QStringList lines = CloudTexts::traits(*traits);
        if (traits->isUnsafe())
            lines.prepend(CloudTexts::unsafe());
        m_traits->setText(QStringLiteral("\u2022 ") + lines.join(QStringLiteral("\n\u2022 ")));
    }
    showWaiting();
    const CloudCacheFiles::Usage usage = CloudCacheFiles::usage();
    m_cache->setText(text("CloudCacheSize", "%1, of which %2 can be cleared.")
                         .arg(sizeText(usage.bytes), sizeText(usage.removableBytes)));
    const bool canClear = usage.removableBytes > 0;
    keepKeyboard(m_clear, canClear, m_sign);
    m_clear->setEnabled(canClear);
}

void CloudPage::showWaiting()
{
    const auto* cache = Vs::CloudCacheManager::getInstance();
    QStringList names;
    for (const boost::filesystem::path& file : cache->waiting()) {
        const bool isOnItsWay = cache->state(file) == Vs::CloudFileState::Uploading;
        const QString name = CloudTexts::shown(file.filename().string());
        names << (isOnItsWay ? text("CloudOnItsWay", "%1 (being sent)").arg(name) : name);
    }
    m_waiting->setText(names.isEmpty() ? text("CloudNothingWaits", "Nothing. All that was saved has arrived.")
                                       : names.join(QStringLiteral(", ")));
    keepKeyboard(m_send, !names.isEmpty(), m_sign);
    m_send->setVisible(!names.isEmpty());
}

void CloudPage::signInOrOut()
{
    // Through their commands, so that titles follow and a recording has them; at once, since deferred runs
    // wait until the dialog is closed.
    const wchar_t* key =
        Vs::MeshportAuth::globalInstance()->isLoggedIn() ? L"CloudLogoutCommand" : L"CloudLoginCommand";
    CommandDefinition* command = CommandDefinitionMgr::get()->findCommandDefinitionById(key);
    const Vs::Status status =
        command ? command->executeCommand(CommandContext::activeContext()) : Vs::Status();
    if (!status.isOk())
        MessageBox::error(status.toString());
    refresh();
}

void CloudPage::sendWaiting()
{
    Vs::CloudCacheManager::getInstance()->uploadWaiting();
    refresh();
}

void CloudPage::clearCache()
{
    CloudCacheFiles::removeWhatTheDriveHas();
    refresh();
}

namespace {

const PreferencesPage kPage([] { return localized("CloudPageTitle", "Cloud"); },
                            [](QWidget* parent) -> QWidget* { return new CloudPage(parent); });

} // namespace
} // namespace Vu::Commands
