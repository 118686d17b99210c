// What the window shows of documents on the cloud drive: their state after their names, and the arrival of
// pending ones.

#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/Document.h"
#include "Server/Skyvault/CloudCacheManager.h"
#include "Server/Skyvault/CloudEvents.h"
#include "UI/Base/Session/DocumentRemark.h"
#include "UI/Base/Session/SavedNotice.h"
#include "UI/Commands/Localized.h"

#include <set>

namespace Vu::Commands {
namespace {

/// A document that is as on the drive, or changed only here, needs no remark: the mark in the title is
/// enough.
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
    case Vs::CloudFileState::Removed:
        return localized("CloudTitleRemoved", "removed from the drive");
    default:
        return {};
    }
}

void tellSaved(const boost::filesystem::path& file, const std::wstring& title)
{
    if (!Vs::TranscriptMgr::get()->replaying())
        SavedNotice::show(title, file.wstring());
}

class Teller : public Vs::CloudEventSite
{
public:
    Teller() { Vs::CloudEventSource::get()->subscribe(this); }
    ~Teller() override { Vs::CloudEventSource::get()->unsubscribe(this); }

private:
    void cloudSessionChanged(Vs::CloudEvent*) override { tell(); }
    void cloudFileStateChanged(Vs::CloudEvent* event) override
    {
        const Vs::CloudFileState state = Vs::CloudCacheManager::getInstance()->state(event->file());
        const bool wasSent = m_sent.erase(event->file()) > 0;
        if (state == Vs::CloudFileState::Uploading)
            m_sent.insert(event->file());
        else if (wasSent && state == Vs::CloudFileState::Clean)
            tellSaved(event->file(), localizedFormat("CloudSaved", "\"%1%\" is saved on the drive",
                                                     event->file().stem().wstring()));
        tell();
    }
    void cloudFileArrived(Vs::CloudEvent* event) override
    {
        tellSaved(event->file(), localizedFormat("CloudArrived", "\"%1%\" has arrived on the drive",
                                                 event->file().stem().wstring()));
        tell();
    }
    static void tell()
    {
        Vs::Event event;
        DocumentRemarkSource::get()->fireDocumentRemarksChanged(&event);
    }

    std::set<boost::filesystem::path> m_sent; ///< The present transfers.
};

const DocumentRemark kRemark(remarkOf);
const Teller kTeller;

} // namespace
} // namespace Vu::Commands
