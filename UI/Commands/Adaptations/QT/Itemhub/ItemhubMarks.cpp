// What the window shows of items' documents: after their names the progress of the newest save, and the
// arrival of a version.

#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/Itemhub/ItemhubEvents.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/DocumentRemark.h"
#include "UI/Base/Session/SavedNotice.h"
#include "UI/Commands/Itemhub/ItemhubCommands.h"
#include "UI/Commands/Itemhub/ItemhubRoles.h"
#include "UI/Commands/Localized.h"

#include <QApplication>
#include <QTimer>

namespace Vu::Commands {
namespace {

using State = Vs::UploadQueuedFileInfo::State;

std::wstring remarkOf(const Vs::Document& document)
{
    if (document.path().empty())
        return {};
    const auto* service = Vs::ItemhubUtilities::get();
    const auto item = service->itemOf(document.path());
    if (!item)
        return {};
    if (const auto pending = service->pendingUpload(document.path()))
        switch (pending->state()) {
        case State::Uploading:
            return localized("ItemhubTitleUploading", "version being sent");
        case State::Waiting:
            return localized("ItemhubTitleWaiting", "version waits for the service");
        case State::Failed:
            return localized("ItemhubTitleFailed", "version could not be sent");
        case State::Outdated:
            return localized("ItemhubTitleOutdated", "somebody else has made a newer version");
        }
    if (item->version == 0)
        return {};
    return ItemhubRoles::mayOnlyRead(document)
               ? localizedFormat("ItemhubTitleReader", "item %1%, version %2%, you may only read",
                                 item->itemId, item->version)
               : localizedFormat("ItemhubTitleVersion", "item %1%, version %2%", item->itemId, item->version);
}

/// A save is over when its version has arrived.
void tellArrived(const boost::filesystem::path& file, std::int64_t version)
{
    if (Vs::TranscriptMgr::get()->replaying())
        return;
    const Vs::DocumentMgr* manager = Vs::DocumentMgr::get();
    const Vs::Document* document = manager ? manager->document(file.wstring()) : nullptr;
    SavedNotice::show(localizedFormat("ItemhubSaved", "\"%1%\" is saved as version %2%",
                                      document ? document->displayName() : file.stem().wstring(), version),
                      file.wstring());
}

class Teller : public Vs::ItemhubEventSite
{
public:
    Teller() { Vs::ItemhubEventSource::get()->subscribe(this); }
    ~Teller() override { Vs::ItemhubEventSource::get()->unsubscribe(this); }

private:
    void sessionChanged(Vs::ItemhubEvent*) override { tell(); }
    void uploadStateChanged(Vs::ItemhubUploadEvent* event) override
    {
        if (event->version() != 0)
            tellArrived(event->document(), event->version());
        tell();
    }
    void itemChanged(Vs::ItemhubItemEvent*) override { tell(); }
    static void tell()
    {
        Vs::Event event;
        DocumentRemarkSource::get()->fireDocumentRemarksChanged(&event);
    }
};

/// After the window's first frame, so that favourites and searches are available without signing in again.
void resumeLater()
{
    if (Application::headless() || Application::testing() || !itemhubIsEnabled())
        return;
    QTimer::singleShot(0, qApp, [] { static_cast<void>(itemhubSession()); });
}

const DocumentRemark kRemark(remarkOf);
const Teller kTeller;
const bool kResumes = (resumeLater(), true);

} // namespace
} // namespace Vu::Commands
