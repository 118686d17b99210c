#include "UI/Design/Resources.h"

#include "Server/Base/PathInfo.h"

namespace Vu::Design {

Resources::Resources()
    : Vs::ResourceMgr(Vs::PathInfo::localizationDirectory(true) / "UI" / "Design" / "Resources")
{
}

Resources* Resources::get()
{
    static Resources resources;
    return &resources;
}

Vs::ImageSetResource* Resources::Box()
{
    return get()->imageSet(L"Box");
}

Vs::ImageSetResource* Resources::Cylinder()
{
    return get()->imageSet(L"Cylinder");
}

Vs::ImageSetResource* Resources::Sphere()
{
    return get()->imageSet(L"Sphere");
}

Vs::ImageSetResource* Resources::Import()
{
    return get()->imageSet(L"Import");
}

Vs::ImageSetResource* Resources::Design()
{
    return get()->imageSet(L"Design");
}

Vs::ImageSetResource* Resources::Simulation()
{
    return get()->imageSet(L"Simulation");
}

Vs::ImageSetResource* Resources::Documentation()
{
    return get()->imageSet(L"Documentation");
}

Vs::Resource* Resources::ToolbarXml()
{
    return get()->resource(L"Toolbar/Toolbars.xml");
}

} // namespace Vu::Design
