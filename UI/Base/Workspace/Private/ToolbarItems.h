#pragma once

#include "UI/Base/Program/Private/Xml.h"
#include "UI/Base/Workspace/ToolbarManager.h"

namespace Vu {

/// Reads the `<item>`, `<separator>` and `<menu>` children of the present element, and where they are those
/// of a menu of the menu bar, `<place>` as well. Private to this library.
std::vector<ToolbarItem> readToolbarItems(XmlFile& xml, const std::wstring& domain, bool ofMenuBar = false);

/// Adds the keys among the items' commands that nobody has registered, without repetition.
void collectUnknownCommands(const std::vector<ToolbarItem>& items, std::vector<std::wstring>& unknown);

/// The present element as messages name it: "<hud>".
std::wstring elementName(const XmlFile& xml);

/// The attribute `title`, localised under the key of the attribute `titleKey` if there is one.
std::wstring localizedTitle(const XmlFile& xml, const std::wstring& domain);

} // namespace Vu
