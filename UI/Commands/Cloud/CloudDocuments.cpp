#include "UI/Commands/Cloud/CloudDocuments.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/QtApplication.h"
#include "Server/Base/Task.h"
#include "Server/DataModel/ApplicationEditionService.h"
#include "Server/DataModel/CloudIdentifiers.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentEvents.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/Skyvault/CloudCacheManager.h"
#include "Server/Skyvault/CloudEvents.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultUtilities.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Program/Notifications.h"
#include "UI/Base/Session/FilePlace.h"
#include "UI/Base/Session/RecentDocumentMgr.h"
#include "UI/Commands/Cloud/CloudCommands.h"
#include "UI/Commands/DeliverResults.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"

#include <QCoreApplication>
#include <QTimer>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace Vu::Commands {
namespace {

constexpr const wchar_t* kSender = L"CloudConflict";
/// How long waiting files wait for the drive before they are tried again.
constexpr int kRetryInterval = 60'000;

/// One notification for each file, which is its sender then.
std::wstring senderOf(const boost::filesystem::path& file)
{
    return kSender + file.wstring();
}

void forgetConflict(const boost::filesystem::path& file)
{
    Vs::NotificationCenter::get()->removeByClientID(senderOf(file));
}

std::optional<FilePlace::Answer> placeOf(const boost::filesystem::path& file)
{
    if (!Vs::PathInfo::isNamedInCloudCache(file))
        return std::nullopt;
    FilePlace::Answer answer{.place = Vs::SkyvaultUtilities::getCloud_TM(),
                             .folder = {},
                             .mark = Resources::Cloud(),
                             .isSent = true,
                             .isGone = Vs::CloudCacheManager::getInstance()->isRemoved(file)};
    std::vector<boost::filesystem::path> stack;
    const boost::filesystem::path root =
        Vs::SkyvaultUtilities::currentCachePath(Vs::MeshportAuth::globalInstance());
    // For another account, the path means nothing to a person.
    if (!Vs::SkyvaultUtilities::getRelativeStack(root, file, stack))
        stack.clear();
    answer.folder = answer.place;
    for (const boost::filesystem::path& each : stack) {
        answer.folder = answer.place;
        answer.place += L" \u203a " + each.wstring();
    }
    return answer;
}

class Listener : public Vs::CloudEventSite
{
public:
    Listener() { Vs::CloudEventSource::get()->subscribe(this); }
    ~Listener() override { Vs::CloudEventSource::get()->unsubscribe(this); }

private:
    void cloudSessionChanged(Vs::CloudEvent*) override { retry(); }
    void cloudFileStateChanged(Vs::CloudEvent* event) override
    {
        const Vs::CloudFileState state = Vs::CloudCacheManager::getInstance()->state(event->file());
        if (state == Vs::CloudFileState::Clean)
            forgetConflict(event->file());
        if (state == Vs::CloudFileState::Waiting)
            retry();
    }
    void cloudFileConflicted(Vs::CloudEvent* event) override
    {
        forgetConflict(event->file());
        Vs::NotificationRequest request;
        request.title = localizedFormat("CloudConflict", "%1% was not saved to the drive",
                                        event->file().filename().wstring());
        request.text = event->text() + L'\n' + FilePlace::shown(event->file().wstring());
        request.clientID = senderOf(event->file());
        request.type = Vs::NotificationType::makeByType(Vs::NotificationType::Offer);
        request.actions = {{localized("CloudSaveCopy", "Save a Copy"),
                            [file = event->file()] { CloudDocuments::saveConflictCopy(file); }, false}};
        Vs::NotificationCenter::get()->sendNotification(std::move(request));
    }
    void cloudFileArrived(Vs::CloudEvent* event) override
    {
        Vs::DocumentMgr* manager = Vs::DocumentMgr::get();
        if (Vs::Document* document = manager ? manager->document(event->file().wstring()) : nullptr)
            document->setCloudId(Vs::CloudCacheManager::getInstance()->identifier(event->file()));
    }

    /// A run without a main loop sends what waits at its next sign-in.
    void retry()
    {
        if (m_timer || !QCoreApplication::instance() || Application::headless())
            return;
        m_timer = std::make_unique<QTimer>();
        QObject::connect(m_timer.get(), &QTimer::timeout,
                         [] { Vs::CloudCacheManager::getInstance()->uploadWaiting(); });
        QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, m_timer.get(),
                         &QTimer::stop);
        m_timer->start(kRetryInterval);
    }

    const FilePlace m_place{placeOf};
    std::unique_ptr<QTimer> m_timer;
};

std::unique_ptr<Listener>& listener()
{
    static std::unique_ptr<Listener> installed;
    return installed;
}

} // namespace

void CloudDocuments::install()
{
    if (listener())
        return;
    listener() = std::make_unique<Listener>();
    Vs::MeshportAuth::editionDisables([] {
        const auto* edition = Application::get()->service<Vs::Services::ApplicationEditionService>();
        return edition && edition->cloudDisabled();
    });
    Vs::QtApplication::maker([] { Application::get()->needGui(); });
    Vs::CloudIdentifiers::source(
        [](const std::wstring& path) { return Vs::CloudCacheManager::getInstance()->identifier(path); });
    deliverResults(Vs::CloudCacheManager::results());
}

void CloudDocuments::uninstall()
{
    Vs::CloudCacheManager::results().wakeUp({});
    Vs::CloudIdentifiers::source({});
    Vs::MeshportAuth::editionDisables({});
    Vs::QtApplication::maker({});
    listener().reset();
}

bool CloudDocuments::isOfDrive(const Vs::Document& document)
{
    if (document.isCloud() || document.path().empty() || !cloudIsEnabled())
        return document.isCloud();
    // It is asked for each button again and again, and to look at the disk takes longer than all the rest.
    // What was found when the file was opened holds: later the disk may not answer, and another tab would
    // never come.
    constexpr size_t kMost = 10000;
    static std::map<std::wstring, bool> found;
    const auto known = found.find(document.path());
    if (known != found.end())
        return known->second;
    if (found.size() >= kMost)
        found.clear();
    return found[document.path()] = Vs::PathInfo::isPathInCloudCache(document.path());
}

void CloudDocuments::saveConflictCopy(const boost::filesystem::path& file)
{
    Vs::DocumentMgr* manager = Vs::DocumentMgr::get();
    Vs::Document* document = manager ? manager->document(file.wstring()) : nullptr;
    boost::filesystem::path copy;
    Vs::SkyvaultNodeData result;
    const Vs::CloudErrorState state =
        Vs::SkyvaultUtilities::SaveConflictCopy(Vs::MeshportAuth::globalInstance(), file, copy, result);
    if (state != Vs::CloudErrorState::Success) {
        MessageBox::error(Vs::SkyvaultUtilities::getErrorString(state));
        return;
    }
    if (document) {
        document->path(copy.wstring());
        document->setCloudId(result.id());
        Vs::DocumentEvent event(document, Vs::Timing::Notification);
        Vs::DocumentEventSource::get()->fireDocumentUpdated(&event);
    }
    RecentDocumentMgr::get()->add(copy.wstring(), true);
    forgetConflict(file);
}

} // namespace Vu::Commands
