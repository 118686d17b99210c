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
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Commands/Adaptations/QT/Cloud/CloudCacheFiles.h"
#include "UI/Commands/Adaptations/QT/Cloud/CloudTexts.h"
#include "UI/Commands/Localized.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QLabel>
#include <QLocale>
#include <QPushButton>

namespace Vu::Commands {
namespace {

using CloudTexts::named;
using CloudTexts::text;

QLabel* paragraph(QWidget* parent)
{
    QLabel* label = PlainText::label(parent);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

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

CloudPage::CloudPage(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("cloudPage"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    m_on = new QCheckBox(named(text("CloudUse", "Use the cloud drive %1")), this);
    m_on->setObjectName(QStringLiteral("cloudOn"));
    column->addWidget(m_on);
    m_rest = new QWidget(this);
    column->addWidget(m_rest);
    auto* rest = new QVBoxLayout(m_rest);
    rest->setContentsMargins(0, 0, 0, 0);
    m_account = paragraph(m_rest);
    m_account->setObjectName(QStringLiteral("cloudAccount"));
    rest->addWidget(m_account);
    m_sign = addButton(rest, "cloudSign", {}, &CloudPage::signInOrOut);
    m_traitsHead = addHead(rest, text("CloudServerDoes", "What the server does"));
    m_traits = paragraph(m_rest);
    m_traits->setObjectName(QStringLiteral("cloudTraits"));
    rest->addWidget(m_traits);
    addHead(rest, text("CloudToSend", "Waiting to be sent"));
    m_waiting = paragraph(m_rest);
    m_waiting->setObjectName(QStringLiteral("cloudWaiting"));
    rest->addWidget(m_waiting);
    m_send = addButton(rest, "cloudSend", text("CloudSendNow", "Send Now"), &CloudPage::sendWaiting);
    addHead(rest, text("CloudCopies", "Copies on this computer"));
    m_cache = paragraph(m_rest);
    m_cache->setObjectName(QStringLiteral("cloudCache"));
    rest->addWidget(m_cache);
    m_clear = addButton(rest, "cloudClear", text("CloudClear", "Clear What the Drive Has Too"),
                        &CloudPage::clearCache);
    connect(m_on, &QCheckBox::clicked, this,
            [](bool on) { Vs::CloudOptionGroup::get()->cloudDisabled(!on); });
    Vs::CloudEventSource::get()->subscribe(this);
    Vs::CloudOptionGroup::get()->subscribe(this);
    refresh();
}

CloudPage::~CloudPage()
{
    Vs::CloudEventSource::get()->unsubscribe(this);
    Vs::CloudOptionGroup::get()->unsubscribe(this);
}

QLabel* CloudPage::addHead(QVBoxLayout* column, const QString& title)
{
    QLabel* head = PlainText::label(m_rest, title);
    head->setForegroundRole(QPalette::PlaceholderText);
    head->setContentsMargins(0, 2 * kMargin, 0, 0);
    column->addWidget(head);
    return head;
}

QPushButton* CloudPage::addButton(QVBoxLayout* column, const char* name, const QString& title,
                                  void (CloudPage::*run)())
{
    auto* button = new QPushButton(title, m_rest);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    column->addWidget(button, 0, Qt::AlignLeft);
    connect(button, &QPushButton::clicked, this, run);
    return button;
}

void CloudPage::refresh()
{
    const auto* options = Vs::CloudOptionGroup::get();
    const Vs::MeshportAuth* auth = Vs::MeshportAuth::globalInstance();
    m_on->setChecked(!options->cloudDisabled());
    // Where the edition has no drive, there is nothing to switch on.
    m_on->setEnabled(options->cloudDisabled() || !auth->cloudDisabled());
    m_rest->setVisible(!auth->cloudDisabled());
    if (auth->cloudDisabled())
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
    keepKeyboard(m_clear, canClear);
    m_clear->setEnabled(canClear);
}

/// From a button that goes the keyboard would move to the next page, which is scrolled to then.
void CloudPage::keepKeyboard(const QPushButton* button, bool stays)
{
    if (!stays && button->hasFocus())
        m_sign->setFocus();
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
    keepKeyboard(m_send, !names.isEmpty());
    m_send->setVisible(!names.isEmpty());
}

void CloudPage::signInOrOut()
{
    // By their commands, so that titles follow and a recording has them; at once, since what is deferred
    // waits until the dialog is closed.
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
