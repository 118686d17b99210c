#include "UI/Base/Program/LabelDescriptionDialog.h"

#include "Server/Base/Status.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Presence.h"
#include "UI/Base/Program/Private/Display.h"

#include <utility>

namespace Vu {
namespace {

LabelDescriptionDialog::Responder& installedResponder()
{
    static LabelDescriptionDialog::Responder responder;
    return responder;
}

std::wstring missing()
{
    return localized("LabelMissing",
                     "No label for the version was given, and nobody is there to ask for it.");
}

} // namespace

bool LabelDescriptionDialog::getDescriptionForLabel(std::wstring& label)
{
    std::wstring given = label;
    if (installedResponder()) {
        if (!installedResponder()(given))
            return false;
    } else if (!canAsk()) {
        Application::get()->inform(missing());
        return false;
    } else if (!Display::get()->askLabel(given, kLongest, Application::get()->mainWidget())) {
        return false;
    }
    if (given.empty())
        return false;
    label = std::move(given);
    return true;
}

bool LabelDescriptionDialog::canAsk()
{
    return installedResponder() || somebodyIsThere();
}

void LabelDescriptionDialog::tellMissing(Vs::Status& status)
{
    if (!canAsk())
        status.addError(missing());
}

void LabelDescriptionDialog::responder(Responder responder)
{
    installedResponder() = std::move(responder);
}

} // namespace Vu
