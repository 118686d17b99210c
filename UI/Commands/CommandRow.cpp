#include "UI/Commands/CommandRow.h"

#include "Server/Base/Strings.h"
#include "UI/Base/Command/CommandTitles.h"
#include "UI/Commands/Localized.h"

namespace Vu::Commands {

Info makeInfo(const CommandRow& row)
{
    const std::string key = Vs::Strings::narrow(row.key);
    // An empty message is the catalogue's own header in gettext; nothing is to be translated there.
    std::wstring title =
        *row.title
            ? CommandTitles::localized(row.key, kDomain, row.titleKey ? row.titleKey : key.c_str(), row.title)
            : std::wstring();
    ToolTipInfo tooltip;
    if (row.tooltip)
        tooltip = ToolTipInfo(localized(row.tooltipKey, row.tooltip), L"", nullptr);
    Vs::ImageSetResource* icon = row.icon ? row.icon() : nullptr;
    return Info(row.key, std::move(title), icon, std::move(tooltip), row.hotkey ? row.hotkey : "",
                row.hotkeyMode);
}

bool hasAssetSession(const CommandContext* context)
{
    return context->assetSession() != nullptr;
}

} // namespace Vu::Commands
