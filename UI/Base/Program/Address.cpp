#include "UI/Base/Program/Address.h"

#include "Server/Base/FilledText.h"
#include "Server/Base/OS.h"
#include "Server/Base/Status.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"

#include <QUrl>

#include <boost/filesystem/operations.hpp>

namespace Vu {
namespace {

bool isOfTheWeb(const std::wstring& address)
{
    const QUrl url(QString::fromStdWString(address), QUrl::StrictMode);
    if (!url.isValid())
        return false;
    if (url.scheme() == QLatin1String("mailto"))
        return !url.path().isEmpty();
    return (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https")) &&
           !url.host().isEmpty();
}

bool isFile(const std::wstring& path)
{
    boost::system::error_code ignored;
    return boost::filesystem::path(path).is_absolute() && boost::filesystem::is_regular_file(path, ignored);
}

} // namespace

void openAddress(const std::wstring& address, AddressOf source, Vs::Status& status)
{
    if (address.empty()) {
        status.addError(localized("NoAddress", "There is no address to open."));
        return;
    }
    if (!isOfTheWeb(address) && !(source == AddressOf::Edition && isFile(address))) {
        status.addError(localizedFormat(
            "BadAddress",
            "\"%1%\" can't be opened: it is not an address that begins with http, https or mailto.",
            address));
        return;
    }
    if (Application::headless() || Application::testing()) {
        Application::get()->inform(address);
        return;
    }
    const auto tellFailure = [address] {
        Application::get()->inform(
            localizedFormat("AddressNotTaken", "No program on this desktop opens \"%1%\".", address));
    };
    if (!Vs::OS::platformShellOpen(address,
                                   [tellFailure] { Application::get()->deferredTasks()->post(tellFailure); }))
        tellFailure();
}

} // namespace Vu
