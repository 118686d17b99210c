#include "UI/Commands/Cloud/CloudDialog.h"

#include "Server/Base/Status.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Presence.h"
#include "UI/Commands/Localized.h"

namespace Vu::Commands {
namespace {

CloudDialog::Asker& installedAsker()
{
    static CloudDialog::Asker asker;
    return asker;
}

CloudDialog::Asker& installedResponder()
{
    static CloudDialog::Asker responder;
    return responder;
}

std::wstring missing()
{
    return localized("CloudPlaceMissing",
                     "No place on the cloud drive was given, and nobody is there to ask for it.");
}

bool ask(const CloudDialog::Request& request, Vs::SkyvaultNodeData& node, std::wstring& name)
{
    if (installedResponder())
        return installedResponder()(request, node, name);
    if (!CloudDialog::canAsk()) {
        Application::get()->inform(missing());
        return false;
    }
    return installedAsker()(request, node, name);
}

} // namespace

bool CloudDialog::SelectFolder(Vs::SkyvaultNodeData& node)
{
    std::wstring name;
    return ask({.kind = Kind::Folder}, node, name);
}

bool CloudDialog::SelectSaveAsFileName(Vs::SkyvaultNodeData& node, std::wstring& name,
                                       const std::wstring& filter, std::wstring& extension)
{
    if (!ask({.kind = Kind::SaveAs, .filter = filter, .extension = extension}, node, name) || name.empty())
        return false;
    if (name.find(L'.') == std::wstring::npos)
        name += extension;
    return true;
}

bool CloudDialog::SelectCloudDocument(Vs::SkyvaultNodeData& node, const std::wstring& filter, bool foldersToo)
{
    std::wstring name;
    return ask({.kind = Kind::Document, .filter = filter, .foldersToo = foldersToo}, node, name);
}

bool CloudDialog::canAsk()
{
    return installedResponder() || (installedAsker() && somebodyIsThere());
}

void CloudDialog::tellMissing(Vs::Status& status)
{
    if (!canAsk())
        status.addError(missing());
}

void CloudDialog::asker(Asker asker)
{
    installedAsker() = std::move(asker);
}

void CloudDialog::responder(Asker responder)
{
    installedResponder() = std::move(responder);
}

std::wstring QTSkyvaultUtilities::sFileExists()
{
    return localized("CloudFileExists", "%1 already exists on the drive.\nDo you want to replace it?");
}

std::wstring QTSkyvaultUtilities::sFileExists(const std::wstring& name)
{
    std::wstring text = sFileExists();
    const size_t place = text.find(L"%1");
    return place == std::wstring::npos ? text : text.replace(place, 2, name);
}

} // namespace Vu::Commands
