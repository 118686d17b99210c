#include "UI/Design/CommandLook.h"

#include "Server/Base/Strings.h"
#include "UI/Base/Command/CommandTitles.h"
#include "UI/Design/Localized.h"

namespace Vu::Design {

Info makeInfo(const CommandLook& look)
{
    const std::string key = Vs::Strings::narrow(look.key);
    ToolTipInfo tooltip;
    if (look.tooltip)
        tooltip = ToolTipInfo(localized((key + "Desc").c_str(), look.tooltip));
    return Info(look.key, CommandTitles::localized(look.key, kDomain, key.c_str(), look.title),
                look.icon ? look.icon() : nullptr, std::move(tooltip), look.hotkey,
                HotKeyBinding::EHotKeyMode::Standard);
}

} // namespace Vu::Design
