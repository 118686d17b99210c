// What the window tells of documents on the cloud drive: their state behind their names, and the arrival of
// what had waited.

#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/Document.h"
#include "Server/Skyvault/CloudCacheManager.h"
#include "Server/Skyvault/CloudEvents.h"
#include "UI/Base/Program/Notifications.h"
#include "UI/Base/Session/DocumentRemark.h"
#include "UI/Commands/Localized.h"

namespace Vu::Commands {
namespace {

/// What is as on the drive, or changed here alone, needs no words: the title's mark tells it as always.
std::wstring remarkOf(const Vs::Document& document)
{
    if (document.path().empty())
        return {};
    switch (Vs::CloudCacheManager::getInstance()->state(document.path())) {
    case Vs::CloudFileState::Uploading:
        return localized("CloudTitleUploading", "being sent");
    case Vs::CloudFileState::Waiting:
        return localized("CloudTitleWaiting", "waiting for the drive");
    case Vs::CloudFileState::Changed:
        return localized("CloudTitleChanged", "changed by somebody else");
    default:
        return {};
    }
}

class Teller : public Vs::CloudEventSite
{
public:
    Teller() { Vs::CloudEventSource::get()->subscribe(this); }
    ~Teller() override { Vs::CloudEventSource::get()->unsubscribe(this); }

private:
    void cloudSessionChanged(Vs::CloudEvent*) override { tell(); }
    void cloudFileStateChanged(Vs::CloudEvent*) override { tell(); }
    void cloudFileArrived(Vs::CloudEvent* event) override
    {
        tell();
        if (Vs::TranscriptMgr::get()->replaying())
            return;
        Vs::NotificationRequest request;
        request.title = localized("CloudArrivedTitle", "Arrived on the drive");
        request.text = localizedFormat("CloudArrived", "%1% is saved on the cloud drive now.",
                                       event->file().filename().wstring());
        request.file = event->file().wstring();
        request.clientID = L"CloudArrived";
        Vs::NotificationCenter::get()->sendNotification(std::move(request));
    }
    static void tell()
    {
        Vs::Event event;
        DocumentRemarkSource::get()->fireDocumentRemarksChanged(&event);
    }
};

const DocumentRemark kRemark(remarkOf);
const Teller kTeller;

} // namespace
} // namespace Vu::Commands
