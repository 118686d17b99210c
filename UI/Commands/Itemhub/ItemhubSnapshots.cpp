#include "UI/Commands/Itemhub/ItemhubSnapshots.h"

#include "Server/Base/Task.h"
#include "Server/DataModel/Recovery/AutoSaveController.h"
#include "Server/Itemhub/ItemhubOptionGroup.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Program/Application.h"
#include "UI/Commands/AutoSave/RecoveryFiles.h"

namespace Vu::Commands {
namespace {

/// Its lifetime is the add-in's, and the queue's may be longer.
ItemhubSnapshots* s_installed = nullptr;

} // namespace

ItemhubSnapshots::ItemhubSnapshots()
{
    s_installed = this;
    m_subscriptions.add(Vs::AutoSaveEventSource::get(), this);
    m_subscriptions.add(Vs::ItemhubEventSource::get(), this);
}

ItemhubSnapshots::~ItemhubSnapshots()
{
    m_subscriptions.clear();
    s_installed = nullptr;
}

/// What earlier runs left was found, or will be told.
void ItemhubSnapshots::sessionChanged(Vs::ItemhubEvent*)
{
    if (Vs::AutoSaveController::get()->hasLooked())
        attachLater();
}

/// Behind what is told, which must not wait for the service.
void ItemhubSnapshots::attachLater()
{
    const auto* service = Vs::ItemhubUtilities::get();
    if (m_later || !Vs::ItemhubOptionGroup::get()->recoverySnapshots() || !service->isAuthenticated())
        return;
    m_later = true;
    Application::get()->deferredTasks()->post([] {
        if (s_installed)
            s_installed->attach();
    });
}

void ItemhubSnapshots::attach()
{
    m_later = false;
    const auto* service = Vs::ItemhubUtilities::get();
    for (const Vs::AutoSavedFileInfo& file : RecoveryFiles::all()) {
        if (file.isCloudFile() || !service->itemOf(file.oriSourceFile()) ||
            !m_attached.insert(file.autoSavedFile() + file.fileSavedTime()).second)
            continue;
        try {
            static_cast<void>(service->attachSnapshot(file.oriSourceFile(), file.autoSavedFile()));
        } catch (const std::exception&) {
            service->fireErrorMessage(Vs::ItemhubUtilities::currentFailure());
        }
    }
}

} // namespace Vu::Commands
