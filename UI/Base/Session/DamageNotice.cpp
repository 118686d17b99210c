#include "UI/Base/Session/DamageNotice.h"

#include "Server/DataModel/DamagedParts.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Notifications.h"

#include <boost/filesystem/path.hpp>

#include <algorithm>

namespace Vu {
namespace {

constexpr const wchar_t* kSender = L"FileDamaged";
constexpr size_t kMost = 8; // What is told of more parts is a matter for the console.

int theNotices = 0;

} // namespace

void DamageNotice::begin()
{
    // It lives to the end of the process, like what it listens to.
    static auto* const notice = new DamageNotice;
    static_cast<void>(notice);
}

DamageNotice::DamageNotice()
{
    ++theNotices;
    m_subscriptions.add(Vs::DocumentEventSource::get(), this);
    for (unsigned i = 0; i < Vs::DocumentMgr::get()->documents(); ++i)
        tell(*Vs::DocumentMgr::get()->document(i));
}

DamageNotice::~DamageNotice()
{
    --theNotices;
}

bool DamageNotice::hasTold(const Vs::Document& document)
{
    const Vs::Asset* asset = document.activeAsset();
    return theNotices > 0 && !document.importedFrom().empty() && asset &&
           !Vs::DamagedParts::warningsOf(*asset).empty();
}

void DamageNotice::documentClosed(Vs::DocumentEvent* event)
{
    if (const std::wstring& file = event->document()->importedFrom(); !file.empty())
        Vs::NotificationCenter::get()->removeAboutFile(kSender, file);
}

void DamageNotice::tell(const Vs::Document& document)
{
    const std::wstring& file = document.importedFrom();
    const Vs::Asset* asset = document.activeAsset();
    if (file.empty() || !asset)
        return;
    const std::vector<std::wstring> warnings = Vs::DamagedParts::warningsOf(*asset);
    if (warnings.empty())
        return;
    Vs::NotificationCenter::get()->removeAboutFile(kSender, file);
    Vs::NotificationRequest request;
    request.title = localizedFormat("FileReadWithWarnings", "\"%1%\" was read with warnings",
                                    boost::filesystem::path(file).filename().wstring());
    for (size_t i = 0; i < std::min(warnings.size(), kMost); ++i)
        request.text += (i == 0 ? L"" : L"\n") + localizedFormat("FileWarning", "It %1%.", warnings[i]);
    if (warnings.size() > kMost)
        request.text += L"\n\u2026";
    request.file = file;
    request.clientID = kSender;
    request.type = Vs::NotificationType::makeByType(Vs::NotificationType::Warning);
    Vs::NotificationCenter::get()->sendNotification(std::move(request));
}

} // namespace Vu
