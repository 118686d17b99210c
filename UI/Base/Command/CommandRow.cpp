#include "UI/Base/Command/CommandRow.h"

#include "Server/Base/StringTable.h"
#include "Server/Base/Strings.h"
#include "UI/Base/Command/CommandTitles.h"

#include <algorithm>

namespace Vu {

Info makeInfo(const CommandRow& row, const wchar_t* domain)
{
    const std::string key = Vs::Strings::narrow(row.key);
    // An empty message is the catalogue's own header in gettext; nothing is to be translated there.
    std::wstring title =
        *row.title
            ? CommandTitles::localized(row.key, domain, row.titleKey ? row.titleKey : key.c_str(), row.title)
            : std::wstring();
    ToolTipInfo tooltip;
    if (row.tooltip) {
        const std::string tooltipKey = row.tooltipKey ? row.tooltipKey : key + "Desc";
        tooltip = ToolTipInfo(Vs::StringTable::getLocalizedString(domain, tooltipKey.c_str(), row.tooltip));
    }
    Vs::ImageSetResource* icon = row.icon ? row.icon() : nullptr;
    Info record(row.key, std::move(title), icon, std::move(tooltip), row.hotkey ? row.hotkey : "",
                row.hotkeyMode);
    record.arguments(std::vector<std::wstring>(
        row.arguments.begin(), std::find(row.arguments.begin(), row.arguments.end(), nullptr)));
    return record;
}

bool hasAssetSession(const CommandContext* context)
{
    return context->assetSession() != nullptr;
}

} // namespace Vu
