#include "UI/Base/Workspace/ToolbarPersister.h"

#include "Server/Base/Strings.h"
#include "UI/Base/Workspace/Private/ToolbarItems.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>

namespace Vu {

namespace {

/// Reads the element that the file is at, and complains about what is wrong with it. Without an identifier it
/// is of no use.
Toolbar readToolbar(XmlFile& xml, const std::wstring& domain)
{
    Toolbar toolbar;
    toolbar.id = xml.attribute("id");
    toolbar.title = localizedTitle(xml, domain);
    toolbar.contents = Vs::Strings::narrow(xml.attribute("contents"));
    toolbar.area = xml.attribute("area");
    const std::wstring environments = xml.attribute("environments");
    boost::split(toolbar.environments, environments, boost::is_space(), boost::token_compress_on);
    std::erase(toolbar.environments, std::wstring());
    const std::wstring align = xml.attribute("align");
    toolbar.atEnd = align == L"end";
    if (!align.empty() && !toolbar.atEnd)
        xml.problem(L"\"" + align + L"\" is not an alignment; there is only \"end\".");
    if (toolbar.id.empty())
        xml.problem(L"A toolbar needs the attribute \"id\".");
    toolbar.items = readToolbarItems(xml, domain);
    return toolbar;
}

} // namespace

ToolbarPersister* ToolbarPersister::get()
{
    static ToolbarPersister persister;
    return &persister;
}

bool ToolbarPersister::loadToolbars(const std::wstring& path, const std::wstring& domain, Vs::Status& status)
{
    Vs::Status found;
    XmlFile xml(path, "toolbars", found);
    std::vector<Toolbar> toolbars;
    if (xml.open())
        while (xml.nextElement()) {
            if (xml.name() != QLatin1String("toolbar")) {
                xml.problem(elementName(xml) + L" cannot stand here.");
                xml.skip();
                continue;
            }
            Toolbar toolbar = readToolbar(xml, domain);
            if (!toolbar.id.empty())
                toolbars.push_back(std::move(toolbar));
        }
    if (!xml.broken())
        for (Toolbar& toolbar : toolbars)
            ToolbarManager::get()->add(std::move(toolbar));
    status.merge(found);
    return found.isOk();
}

} // namespace Vu
