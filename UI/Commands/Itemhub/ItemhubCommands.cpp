#include "UI/Commands/Itemhub/ItemhubCommands.h"

#include "Server/Base/Exception.h"
#include "Server/Base/NumberText.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Document.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/WaitCursor.h"

#include <boost/filesystem/path.hpp>

namespace Vu::Commands {

using Vs::ItemhubUtilities;

bool itemhubIsEnabled()
{
    const ItemhubUtilities* service = ItemhubUtilities::get();
    return service && !service->ItemhubDisabled();
}

bool isSignedInToItemhub()
{
    const ItemhubUtilities* service = ItemhubUtilities::get();
    return service && service->isAuthenticated();
}

bool itemhubSession()
{
    ItemhubUtilities* service = ItemhubUtilities::get();
    if (service->isAuthenticated() || service->ItemhubDisabled())
        return service->isAuthenticated();
    try {
        return service->resume();
    } catch (const std::exception&) {
        service->fireErrorMessage(ItemhubUtilities::currentFailure());
        return false;
    }
}

Info itemhubInfo(const CommandRow& row, const char* before, const char* behind)
{
    Info info = makeInfo(row);
    const std::string key = row.titleKey;
    info.changeAppearance(localized((key + '1').c_str(), before) + ItemhubUtilities::getItemhub_TM() +
                              localized((key + '2').c_str(), behind),
                          info.icon());
    return info;
}

int numberArgument(const CommandContext& context, const Vs::UniqueString* name)
{
    const std::wstring text = context.argumentAsString(name);
    const auto number = Vs::readNumber<int>(text);
    if (!number)
        throw Vs::Exception(Vs::Strings::narrow(localizedFormat(
            "ItemhubNoNumber", "%1% must be a whole number, not \"%2%\".", name->wideText(), text)));
    return *number;
}

void nameAfterFile(Vs::Document& document, const std::wstring& path)
{
    const std::wstring file = boost::filesystem::path(path).stem().wstring();
    if (const std::wstring name = file.substr(0, file.rfind(L'.')); !name.empty())
        document.displayName(name);
}

void withItemhubErrors(const std::function<void()>& work)
{
    const WaitCursor cursor;
    try {
        work();
    } catch (const Vs::Exception& failure) {
        ItemhubUtilities::get()->fireErrorMessage(failure.message());
    } catch (...) {
        ItemhubUtilities::get()->fireErrorMessage(
            localized("ItemhubOpenDocumentErrorUnknownError",
                      "Catch a unknown error when downloading and opening document form Itemhub"));
    }
}

} // namespace Vu::Commands
