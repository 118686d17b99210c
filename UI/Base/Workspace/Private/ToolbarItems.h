#pragma once

#include "UI/Base/Program/Private/Xml.h"
#include "UI/Base/Workspace/ToolbarManager.h"

namespace Vu {

/// Reads the `<item>`, `<separator>` and `<menu>` children of the present element. Private to this library.
std::vector<ToolbarItem> readToolbarItems(XmlFile& xml, const std::wstring& domain);

/// The present element as messages name it: "<hud>".
std::wstring elementName(const XmlFile& xml);

/// The attribute `title`, localised under the key of the attribute `titleKey` if there is one.
std::wstring localizedTitle(const XmlFile& xml, const std::wstring& domain);

} // namespace Vu
